#include "mainwindow/hints.h"

#include "mainwindow/appstate.h"
#include "mainwindow/startup.h"
#include "platform/messagebox.h"

#include <QEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QVariant>
#include <QWidget>

namespace {

const QString CopyButton = QStringLiteral("Command4");
const QString ReactionList = QStringLiteral("Combo1");
const QString Window = QStringLiteral("feuilleP");

} // namespace

const std::vector<std::pair<QString, QString>>& Hints::table() {
    static const std::vector<std::pair<QString, QString>> hints = {
        {QStringLiteral("Command1"),
         QStringLiteral("Pour retrouver le module principal et quitter cette application")},
        {QStringLiteral("Command10"),
         QStringLiteral("Pour configurer l'imprimante et imprimer l'image")},
        {QStringLiteral("Command11"), QStringLiteral("Pour conserver la configuration en cours")},
        {QStringLiteral("Command2"), QStringLiteral("Pour retrouver une situation enregistrée")},
        {CopyButton, QStringLiteral("Copier pour placer une image dans le presse- papiers puis "
                                    "coller depuis Word, Paint...")},
        {QStringLiteral("Command7"),
         QStringLiteral("Si vous rencontrez une difficulté avec cette application")},
        {QStringLiteral("Command8"), QStringLiteral("Machine à calculer")},
        {Window, defaultHint()},
        {QStringLiteral("Frame2"), QStringLiteral("Vous pouvez modifier les quantités de matière "
                                                  "et l'avancement de la réaction")},
        {QStringLiteral("Picmicro"),
         QStringLiteral("Utiliser les boutons pour activer l'animation")},
        {QStringLiteral("Picture3"),
         QStringLiteral("Utiliser les boutons pour activer l'animation")},
        {QStringLiteral("Picture1"), QStringLiteral("Vous pouvez modifier ces paramètres")},
        {QStringLiteral("Picture5"), QStringLiteral("Les données affichées dépendesnt de la "
                                                    "réaction et des options choisies")},
        {QStringLiteral("btexo"), QStringLiteral("Ouvrir un énoncé, enregistrer le texte, obtenir "
                                                 "la correction, imprimer ou fermer.")},
        {ReactionList, QStringLiteral("Choisir la réaction dans le liste")},
    };
    return hints;
}

QString Hints::hintFor(const QString& control) {
    for (const auto& [name, hint] : table())
        if (name == control)
            return hint;
    return {};
}

Hints::Hints(QWidget* window, QLabel* info, const AppState& state)
    : QObject(window), window_(window), info_(info), state_(state) {
    setObjectName(QStringLiteral("Hints"));
    for (const auto& entry : table()) {
        QWidget* w =
            entry.first == window->objectName() ? window : window->findChild<QWidget*>(entry.first);
        if (!w)
            continue;
        // Hints follow the mouse without a button held.
        if (entry.first != ReactionList)
            w->setMouseTracking(true);
        w->installEventFilter(this);
    }
}

bool Hints::eventFilter(QObject* watched, QEvent* event) {
    auto* w = qobject_cast<QWidget*>(watched);
    if (!w)
        return false;
    const QString name = w->objectName();
    if (name == ReactionList) {
        if (event->type() == QEvent::FocusIn)
            setInfoCaption(info_, hintFor(name));
        return false;
    }
    if (event->type() != QEvent::MouseMove)
        return false;
    if (w == window_) {
        // The window's own hint is for its bare background; a move passed up from a control
        // without a hint of its own changes nothing.
        const auto* move = static_cast<QMouseEvent*>(event);
        if (window_->childAt(move->position().toPoint()) != nullptr)
            return false;
    }
    // After a copy, the confirmation stays while the mouse rests on the copy button.
    if (name == CopyButton && infoCaption(info_) == state_.CopyMessage)
        return false;
    setInfoCaption(info_, hintFor(name));
    return false;
}

void setInfoCaption(QLabel* info, const QString& caption) {
    if (!info)
        return;
    info->setProperty("Caption", caption);
    info->setText(platform::captionText(caption));
}

QString infoCaption(const QLabel* info) {
    return info ? info->property("Caption").toString() : QString();
}
