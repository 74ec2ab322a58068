#include "mainwindow/application.h"
#include "mainwindow/feuillep.h"
#include "mainwindow/illustrationexport.h"
#include "platform/programfolder.h"
#include "platform/singleinstance.h"
#include "platform/zoom.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {
// A file handed over by a later launch: the window comes forward and opens it, once no
// secondary window is open any more (they are modal, and the file would change the state
// under them).
void openHandedOverFile(feuilleP& window, const QString& path) {
    window.showNormal();
    window.raise();
    window.activateWindow();
    if (QWidget* modal = QApplication::activeModalWidget()) {
        modal->raise();
        QTimer::singleShot(500, &window, [&window, path] { openHandedOverFile(window, path); });
        return;
    }
    window.openFile(path);
}
} // namespace

int main(int argc, char* argv[]) {
    // An export draws without a window, so it needs no screen either (scripts, servers).
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--export") == 0 && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    setUpApplication(app);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Thermivo"));
    parser.addHelpOption();
    const QCommandLineOption folderOption(
        QStringLiteral("program-folder"),
        QStringLiteral("Folder holding the program's data files."), QStringLiteral("DIR"));
    const QCommandLineOption screenshotOption(
        QStringLiteral("screenshot"),
        QStringLiteral("Render the main window into FILE.png once painted, then quit."),
        QStringLiteral("FILE"));
    const QCommandLineOption reactionOption(QStringLiteral("reaction"),
                                            QStringLiteral("With --screenshot: reaction 1 to 8."),
                                            QStringLiteral("N"));
    const QCommandLineOption tabOption(
        QStringLiteral("tab"),
        QStringLiteral("With --screenshot: tab 1 Micro, 2 Macro, 3 Options."), QStringLiteral("N"));
    const QCommandLineOption statementOption(
        QStringLiteral("statement"),
        QStringLiteral("With --screenshot: load this RTF file into the statement area."),
        QStringLiteral("FILE"));
    const QCommandLineOption widgetOption(
        QStringLiteral("widget"),
        QStringLiteral("With --screenshot: render only the control of this name (Picture4)."),
        QStringLiteral("NAME"));
    const QCommandLineOption clickOption(
        QStringLiteral("click"),
        QStringLiteral("With --screenshot: click the button or menu item of this name first "
                       "(Image6, openexo); the window it opens is rendered, if any (Command8)."),
        QStringLiteral("NAME"));
    parser.addOptions({folderOption, screenshotOption, reactionOption, tabOption, statementOption,
                       widgetOption, clickOption});
    const QCommandLineOption exportOption(
        QStringLiteral("export"),
        QStringLiteral("Write illustration WHAT (micro, diagram, macro or graph) into the file "
                       "given after the options (.png, .svg or .pdf), without a window."),
        QStringLiteral("WHAT"));
    const QCommandLineOption stepOption(QStringLiteral("step"),
                                        QStringLiteral("With --export: K animation steps first."),
                                        QStringLiteral("K"));
    const QCommandLineOption scaleOption(QStringLiteral("scale"),
                                         QStringLiteral("With --export to PNG: scale 1, 2 or 4."),
                                         QStringLiteral("S"));
    const QCommandLineOption zoomOption(
        QStringLiteral("zoom"), QStringLiteral("Zoom of every window: 100, 125, 150, 175 or 200."),
        QStringLiteral("N"));
    parser.addOptions({exportOption, stepOption, scaleOption, zoomOption});
    parser.addPositionalArgument(
        QStringLiteral("file"),
        QStringLiteral("Configuration (.C10) or exercise (.E31) to open at start."),
        QStringLiteral("[FILE]"));
    parser.process(app);

    if (parser.isSet(folderOption))
        platform::setProgramFolderOverride(parser.value(folderOption));

    // A relative name counts from the folder the program was started in.
    const QStringList files = parser.positionalArguments();
    const QString file = files.isEmpty() ? QString() : QFileInfo(files.first()).absoluteFilePath();
    const QString shot = parser.value(screenshotOption);
    // One copy per user: a launch with a file hands it to the running window and ends.
    const bool interactive = shot.isEmpty() && !parser.isSet(exportOption);
    if (interactive && !file.isEmpty() && platform::SingleInstance::handOver(file))
        return 0;

    // Pictures for the help pages and worksheets are made at 100 % unless asked otherwise; a
    // class gets the zoom it chose last time, or the largest that fits the screen.
    const int requestedZoom = parser.value(zoomOption).toInt();
    platform::Zoom::instance().apply(
        interactive ? platform::Zoom::startingZoom(requestedZoom, QSize(800, 600))
                    : std::max(100, platform::validZoom(requestedZoom)));

    feuilleP window;
    if (parser.isSet(exportOption)) {
        const auto which = illustrationFromName(parser.value(exportOption));
        if (!which || files.size() != 1) {
            std::fputs("thermivo: --export micro|diagram|macro|graph FILE\n", stderr);
            return 2;
        }
        window.setQuietShutdown(true);
        window.loadWithoutWindow();
        if (const int reaction = parser.value(reactionOption).toInt(); reaction > 0)
            window.selectReaction(reaction);
        if (const int tab = parser.value(tabOption).toInt(); tab > 0)
            window.selectTab(tab);
        window.runAnimationSteps(parser.value(stepOption).toInt());
        const int scale = parser.isSet(scaleOption) ? parser.value(scaleOption).toInt() : 1;
        if (!exportIllustration(window, *which, files.first(), scale)) {
            std::fprintf(stderr, "thermivo: cannot write %s\n", qPrintable(files.first()));
            return 1;
        }
        return 0;
    }
    // The file windows show the current folder: start where the user keeps files.
    if (interactive)
        QDir::setCurrent(platform::startingFolder(platform::programFolder()));
    if (!file.isEmpty())
        QObject::connect(&window, &feuilleP::firstPainted, &window,
                         [&window, file] { window.openFile(file); });
    platform::SingleInstance instance;
    if (interactive && instance.listen())
        QObject::connect(&instance, &platform::SingleInstance::fileReceived, &window,
                         [&window](const QString& path) { openHandedOverFile(window, path); });
    if (!shot.isEmpty()) {
        window.setQuietShutdown(true);
        const int reaction = parser.value(reactionOption).toInt();
        const int tab = parser.value(tabOption).toInt();
        const QString statement = parser.value(statementOption);
        const QString widget = parser.value(widgetOption);
        const QString click = parser.value(clickOption);
        QObject::connect(&window, &feuilleP::firstPainted, &window, [=, &window] {
            if (reaction > 0)
                window.selectReaction(reaction);
            if (tab > 0)
                window.selectTab(tab);
            if (!statement.isEmpty())
                window.loadStatement(statement);
            // A clicked button (or a menu item of that name) may open a modal window: it is
            // rendered from inside its own loop. Otherwise the click's effect on the main
            // window is what is rendered.
            auto rendered = std::make_shared<bool>(false);
            auto* button = click.isEmpty() ? nullptr : window.findChild<QAbstractButton*>(click);
            auto* action = click.isEmpty() || button ? nullptr : window.findChild<QAction*>(click);
            if (button || action) {
                QTimer::singleShot(0, &window, [shot, rendered] {
                    if (QPointer<QWidget> dialog = QApplication::activeModalWidget()) {
                        dialog->grab().save(shot);
                        *rendered = true;
                        dialog->close();
                    }
                });
                if (button)
                    button->click();
                else
                    action->trigger();
            }
            if (!*rendered) {
                QWidget* part = widget.isEmpty() ? nullptr : window.findChild<QWidget*>(widget);
                (part ? part : static_cast<QWidget*>(&window))->grab().save(shot);
            }
            window.close();
        });
    }
    QObject::connect(&window, &feuilleP::firstPainted, &window, [] { setApplicationIcon(); });
    window.show();
    return QApplication::exec();
}
