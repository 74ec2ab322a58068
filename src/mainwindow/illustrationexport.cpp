#include "mainwindow/illustrationexport.h"

#include "macro/graphes.h"
#include "macro/macropanel.h"
#include "mainwindow/feuillep.h"
#include "micro/micropanel.h"
#include "platform/messagebox.h"
#include "platform/pictureexport.h"
#include "platform/surface.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QStandardPaths>

namespace {

struct Choice {
    Illustration which;
    const char* name;
    const char* caption;
};

constexpr Choice Choices[] = {
    {Illustration::Micro, "micro", "L'illustration de l'aspect microscopique"},
    {Illustration::Diagram, "diagram", "Le bilan énergétique de l'aspect microscopique"},
    {Illustration::Macro, "macro", "L'illustration de l'aspect macroscopique"},
    {Illustration::Graph, "graph", "Le graphe de l'énergie échangée"},
};

platform::Surface* surfaceOf(feuilleP& window, Illustration which) {
    switch (which) {
    case Illustration::Micro:
        return window.micro()->picmicro();
    case Illustration::Diagram:
        return window.micro()->picture2();
    case Illustration::Macro:
        return window.macro()->picture4();
    case Illustration::Graph:
        break;
    }
    return nullptr;
}

} // namespace

std::optional<Illustration> illustrationFromName(const QString& name) {
    for (const Choice& c : Choices)
        if (name == QLatin1String(c.name))
            return c.which;
    return std::nullopt;
}

QString illustrationName(Illustration which) {
    for (const Choice& c : Choices)
        if (c.which == which)
            return QString::fromLatin1(c.name);
    return {};
}

bool exportIllustration(feuilleP& window, Illustration which, const QString& path, int scale) {
    const QString title = QStringLiteral("Thermivo");
    if (which != Illustration::Graph) {
        platform::Surface* s = surfaceOf(window, which);
        return s && platform::exportSurface(*s, path, scale, title);
    }
    const std::optional<macro::GraphInput> input = window.macro()->graphInput();
    if (!input)
        return false;
    // The graph window, built but never shown, draws its plot from the balance.
    graphes plot(*input, &window);
    plot.tracegraphe();
    return platform::exportSurface(*plot.picture1(), path, scale, title);
}

bool askAndExportIllustration(feuilleP& window) {
    QDialog dialog(&window);
    dialog.setObjectName(QStringLiteral("exportillus"));
    dialog.setWindowTitle(QStringLiteral("Exporter l'illustration"));
    auto* what = new QComboBox(&dialog);
    what->setObjectName(QStringLiteral("exportWhat"));
    for (const Choice& c : Choices) {
        if (c.which == Illustration::Graph && !window.macro()->graphInput())
            continue; // no graph without an advancement
        what->addItem(QString::fromUtf8(c.caption), static_cast<int>(c.which));
    }
    auto* scale = new QComboBox(&dialog);
    scale->setObjectName(QStringLiteral("exportScale"));
    for (int k : platform::ExportScales)
        scale->addItem(QStringLiteral("%1×").arg(k), k);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* form = new QFormLayout(&dialog);
    form->addRow(QStringLiteral("&Illustration :"), what);
    form->addRow(QStringLiteral("É&chelle (PNG) :"), scale);
    form->addRow(buttons);
    if (dialog.exec() != QDialog::Accepted)
        return false;

    const auto which = static_cast<Illustration>(what->currentData().toInt());
    const QString png = QStringLiteral("Image PNG (*.png)");
    const QString svg = QStringLiteral("Dessin SVG (*.svg)");
    const QString pdf = QStringLiteral("Document PDF (*.pdf)");
    QString filter = png;
    QString path = QFileDialog::getSaveFileName(
        &window, QStringLiteral("Exporter l'illustration"),
        QStandardPaths::writableLocation(QStandardPaths::PicturesLocation) + QLatin1Char('/') +
            illustrationName(which) + QStringLiteral(".png"),
        png + QStringLiteral(";;") + svg + QStringLiteral(";;") + pdf, &filter);
    if (path.isEmpty())
        return false;
    if (platform::exportFormatFor(path) == platform::ExportFormat::Unknown)
        path += filter == svg   ? QStringLiteral(".svg")
                : filter == pdf ? QStringLiteral(".pdf")
                                : QStringLiteral(".png");
    if (exportIllustration(window, which, path, scale->currentData().toInt()))
        return true;
    platform::showCritical(
        &window, QStringLiteral("Exporter l'illustration"),
        QStringLiteral("Impossible d'écrire le fichier %1.").arg(QFileInfo(path).fileName()));
    return false;
}
