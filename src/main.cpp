#include "mainwindow/application.h"
#include "mainwindow/feuillep.h"
#include "platform/programfolder.h"

#include <QApplication>
#include <QCommandLineParser>
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
        QStringLiteral("Render the main window into FILE.png, then quit."), QStringLiteral("FILE"));
    parser.addOption(folderOption);
    parser.addOption(screenshotOption);
    parser.process(app);

    if (parser.isSet(folderOption))
        platform::setProgramFolderOverride(parser.value(folderOption));

    feuilleP window;
    const QString shot = parser.value(screenshotOption);
    if (!shot.isEmpty()) {
        window.setQuietShutdown(true);
        // Grab once the first paint has gone through, then leave by the ordinary way out.
        QTimer::singleShot(200, &window, [&window, shot] {
            window.grab().save(shot);
            window.close();
        });
    }
    window.show();
    return QApplication::exec();
}
