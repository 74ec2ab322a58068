#include "configurations/configurations.h"

#include "configurations/enregistrer.h"
#include "configurations/ouvrir.h"
#include "macro/macropanel.h"
#include "mainwindow/context.h"
#include "platform/messagebox.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QLineEdit>
#include <QMimeData>
#include <QRadioButton>
#include <QUrl>
#include <exception>

namespace configurations {

namespace {

// After the file is closed the loader ignores failures, statement by statement.
template <typename F> void ignoringFailures(F&& statement) {
    try {
        statement();
    } catch (const std::exception&) {
    }
}

QString absolutePath(const QString& path) {
    return QDir::isRelativePath(path) ? QDir::current().absoluteFilePath(path) : path;
}

} // namespace

Configurations::Configurations(MainContext& ctx, MacroPanel& macro,
                               std::function<void()> combo1Click, QObject* parent)
    : QObject(parent), ctx_(ctx), macro_(macro), combo1Click_(std::move(combo1Click)) {
    setObjectName(QStringLiteral("Configurations"));
}

QString& Configurations::ConfigFilePath() {
    return ctx_.state.ConfigFilePath;
}

QWidget* Configurations::messageParent() const {
    if (openDialog_ && openDialog_->isVisible())
        return openDialog_;
    return ctx_.window;
}

void Configurations::setCaption() {
    if (ctx_.window)
        ctx_.window->setWindowTitle(QStringLiteral("Thermivo - ") + ctx_.state.ConfigFilePath);
}

ConfigurationData Configurations::currentConfiguration() const {
    ConfigurationData data;
    data.listIndex = static_cast<std::int16_t>(ctx_.Combo1->currentIndex());
    for (int i = 0; i < 2; ++i)
        data.amounts[static_cast<std::size_t>(i)] = macro_.text1(i)->text();
    for (std::size_t i = 0; i < 3; ++i)
        data.checked[i] = ctx_.Check1[i]->isChecked();
    data.isolated = ctx_.Option1[0]->isChecked();
    return data;
}

bool Configurations::writeConfiguration(QDialog* dialog) {
    const QString path = ctx_.state.ConfigFilePath;
    // The controls are read at the moment of each try.
    const auto attempt = [&] {
        const std::optional<QByteArray> bytes = encodeConfiguration(currentConfiguration());
        return bytes && writeConfigurationFile(path, *bytes);
    };
    if (!attempt()) {
        platform::showCritical(dialog ? static_cast<QWidget*>(dialog) : ctx_.window,
                               QStringLiteral("Enregistrement impossible"),
                               QStringLiteral("Ecriture impossible sur disque"));
        if (!attempt())
            return false;
    }
    setCaption();
    if (dialog)
        dialog->done(QDialog::Accepted);
    return true;
}

void Configurations::applyRecord(int record, const LoadPlan& plan) {
    switch (record) {
    case 2:
        // Choosing a position in the list runs the reaction change at once.
        ctx_.Combo1->setCurrentIndex(*plan.listIndex);
        combo1Click_();
        break;
    case 3:
    case 4:
        macro_.text1(record - 3)->setText(*plan.amounts[static_cast<std::size_t>(record - 3)]);
        break;
    case 5:
    case 6:
    case 7:
        ctx_.Check1[static_cast<std::size_t>(record - 5)]->setChecked(
            *plan.checked[static_cast<std::size_t>(record - 5)]);
        break;
    default: {
        QRadioButton* isolated = ctx_.Option1[0];
        if (*plan.isolated) {
            isolated->setChecked(true);
            break;
        }
        // Only the isolated system's button is written to: "0" unselects it and leaves the
        // other one as it is, possibly with neither selected, which the exclusive group would
        // refuse. The group is exclusive again for the next click.
        QButtonGroup* group = isolated->group();
        const bool exclusive = group && group->exclusive();
        if (exclusive)
            group->setExclusive(false);
        const bool autoExclusive = isolated->autoExclusive();
        isolated->setAutoExclusive(false);
        isolated->setChecked(false);
        isolated->setAutoExclusive(autoExclusive);
        if (exclusive)
            group->setExclusive(true);
        break;
    }
    }
}

void Configurations::LoadConfiguration() {
    const QString path = ctx_.state.ConfigFilePath;
    if (openDialog_)
        openDialog_->repaint(); // its waiting notice shows while the file is read
    QWidget* parent = messageParent();

    // The first failure is reported; the failed step is tried once more and any further
    // failure passes silently.
    bool reported = false;
    const auto readFailure = [&] {
        if (reported)
            return;
        reported = true;
        platform::showCritical(parent, QStringLiteral("Erreur lors du chargement du fichier"),
                               QStringLiteral("Lecture impossible sur disque"));
    };

    std::optional<QByteArray> bytes = readConfigurationFile(path);
    if (!bytes) {
        readFailure();
        bytes = readConfigurationFile(path);
    }
    const LoadPlan plan = planLoad(bytes);
    if (plan.failedRecord == 1)
        readFailure();
    if (!plan.signatureValid) {
        platform::showCritical(parent, QStringLiteral("Fichier non valide"),
                               QStringLiteral("Ce fichier ne correspond pas à cette application"));
        return;
    }
    for (int record = 2; record <= RecordCount; ++record) {
        if (record == plan.failedRecord) {
            // The file is closed here: the records after it are not read.
            readFailure();
            break;
        }
        applyRecord(record, plan);
    }

    // The file is closed; from here on failures are ignored.
    ignoringFailures([&] {
        if (openDialog_)
            openDialog_->done(QDialog::Accepted);
    });
    ignoringFailures([&] { macro_.Text1_LostFocus(0); });
    ignoringFailures([&] { macro_.Text1_LostFocus(1); });
    ignoringFailures([&] { combo1Click_(); });
    setCaption();
}

bool Configurations::requireExistingFile() {
    if (configurationFileExists(ctx_.state.ConfigFilePath))
        return true;
    platform::showCritical(messageParent(), QStringLiteral("impossible d'ouvrir ce fichier"),
                           QStringLiteral("Nom de fichier incorrect ou chemin non valide"));
    return false;
}

bool Configurations::openConfigurationFile(const QString& path) {
    if (path.trimmed().isEmpty())
        return false;
    ctx_.state.ConfigFilePath = absolutePath(path);
    if (!requireExistingFile())
        return false;
    LoadConfiguration();
    return true;
}

void Configurations::showOpenDialog() {
    ouvrir dialog(*this, ctx_.window);
    openDialog_ = &dialog;
    dialog.exec();
    openDialog_ = nullptr;
}

void Configurations::showSaveDialog() {
    enregistrer dialog(*this, ctx_.window);
    dialog.exec();
}

QString Configurations::droppedConfiguration(const QMimeData* mime) {
    if (!mime || !mime->hasUrls())
        return {};
    const QList<QUrl> urls = mime->urls();
    if (urls.size() != 1 || !urls.first().isLocalFile())
        return {};
    const QString path = urls.first().toLocalFile();
    // Exercises are dropped on the same window; the main window sends each to its opener.
    if (!path.endsWith(QLatin1String(Extension), Qt::CaseInsensitive) &&
        !path.endsWith(QLatin1String(".E31"), Qt::CaseInsensitive))
        return {};
    return path;
}

void Configurations::acceptDrops(QWidget* window, std::function<void(const QString&)> open) {
    dropWindow_ = window;
    dropOpen_ = std::move(open);
    window->setAcceptDrops(true);
    // Seen before the window's own controls, so a file dropped on the statement area opens too
    // instead of being pasted as a name.
    qApp->installEventFilter(this);
}

bool Configurations::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || !dropWindow_ || widget->window() != dropWindow_)
        return QObject::eventFilter(watched, event);
    auto* drop = static_cast<QDropEvent*>(event);
    const QString path = droppedConfiguration(drop->mimeData());
    if (path.isEmpty())
        return QObject::eventFilter(watched, event);
    drop->acceptProposedAction();
    if (type == QEvent::Drop) {
        // Opened once the drop is over: message boxes must not run inside it.
        QMetaObject::invokeMethod(
            this,
            [this, path] {
                if (dropOpen_)
                    dropOpen_(path);
            },
            Qt::QueuedConnection);
    }
    return true;
}

} // namespace configurations
