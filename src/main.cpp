#include "mainwindow/application.h"
#include "mainwindow/feuillep.h"
#include "platform/programfolder.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QTimer>

int main(int argc, char* argv[]) {
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
    parser.addOptions({folderOption, screenshotOption, reactionOption, tabOption});
    parser.addPositionalArgument(
        QStringLiteral("file"),
        QStringLiteral("Configuration (.C10) or exercise (.E31) to open at start."),
        QStringLiteral("[FILE]"));
    parser.process(app);

    if (parser.isSet(folderOption))
        platform::setProgramFolderOverride(parser.value(folderOption));

    feuilleP window;
    // A relative name counts from the folder the program was started in.
    if (const QStringList files = parser.positionalArguments(); !files.isEmpty()) {
        const QString config = QFileInfo(files.first()).absoluteFilePath();
        QObject::connect(&window, &feuilleP::firstPainted, &window,
                         [&window, config] { window.openFile(config); });
    }
    const QString shot = parser.value(screenshotOption);
    if (!shot.isEmpty()) {
        window.setQuietShutdown(true);
        const int reaction = parser.value(reactionOption).toInt();
        const int tab = parser.value(tabOption).toInt();
        QObject::connect(&window, &feuilleP::firstPainted, &window, [&window, shot, reaction, tab] {
            if (reaction > 0)
                window.selectReaction(reaction);
            if (tab > 0)
                window.selectTab(tab);
            window.grab().save(shot);
            window.close();
        });
    }
    window.show();
    return QApplication::exec();
}
