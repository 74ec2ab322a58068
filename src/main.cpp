#include "mainwindow/application.h"
#include "mainwindow/feuillep.h"
#include "mainwindow/illustrationexport.h"
#include "platform/programfolder.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <cstring>

int main(int argc, char* argv[]) {
    // An export draws without a window, so it needs no screen either (scripts, servers).
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--export") == 0 && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
    // The zoom scales every window and drawing; it must be known before the application starts.
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], "--zoom") == 0) {
            const int percent = std::atoi(argv[i + 1]);
            if (percent >= 100 && percent <= 200 && percent % 25 == 0)
                qputenv("QT_SCALE_FACTOR", QByteArray::number(percent / 100.0));
        }
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
    parser.process(app);

    if (parser.isSet(folderOption))
        platform::setProgramFolderOverride(parser.value(folderOption));

    feuilleP window;
    if (parser.isSet(exportOption)) {
        const auto which = illustrationFromName(parser.value(exportOption));
        const QStringList files = parser.positionalArguments();
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
