#include "platform/programfolder.h"

#include <QCoreApplication>
#include <QTest>

class TestProgramFolder : public QObject {
    Q_OBJECT
private slots:
    void resolve_data();
    void resolve();
    void precedence();
    void startingFolder_data();
    void startingFolder();
};

void TestProgramFolder::resolve_data() {
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* tag, const char* folder, const char* name, const char* path) {
        QTest::newRow(tag) << QString(folder) << QString(name) << QString(path);
    };
    row("written on Windows", "/opt/t", "exos\\e1.E31", "/opt/t/exos/e1.E31");
    row("folder written on Windows", "C:\\T", "x.C10", "C:/T/x.C10");
    row("absolute", "/opt/t/", "/home/eleve/x.C10", "/home/eleve/x.C10");
    row("drive letter kept relative", "/opt/t/", "C:\\e.E31", "/opt/t/e.E31");
}

void TestProgramFolder::resolve() {
    QFETCH(QString, folder);
    QFETCH(QString, name);
    QFETCH(QString, expected);
    QCOMPARE(platform::resolveInFolder(folder, name), expected);
}

void TestProgramFolder::precedence() {
    qunsetenv("THERMIVO_PROGRAM_FOLDER");
    QCOMPARE(platform::programFolder(), QCoreApplication::applicationDirPath() + QLatin1Char('/'));
    qputenv("THERMIVO_PROGRAM_FOLDER", "/tmp/from-env");
    QCOMPARE(platform::programFolder(), QStringLiteral("/tmp/from-env/"));
    platform::setProgramFolderOverride(QStringLiteral("/tmp/from-option/"));
    QCOMPARE(platform::programFolder(), QStringLiteral("/tmp/from-option/"));
}

void TestProgramFolder::startingFolder_data() {
    QTest::addColumn<QString>("current");
    QTest::addColumn<bool>("writable");
    QTest::addColumn<QString>("documents");
    QTest::addColumn<QString>("expected");
    const QString docs = QStringLiteral("/home/prof/Documents");
    QTest::newRow("desktop menu: home") << "/home/prof" << true << docs << docs;
    QTest::newRow("home with a slash") << "/home/prof/" << true << docs << docs;
    QTest::newRow("root") << "/" << false << docs << docs;
    QTest::newRow("installed program folder") << "/usr/share/thermivo" << false << docs << docs;
    QTest::newRow("inside the program folder")
        << "/usr/share/thermivo/exercices" << false << docs << docs;
    QTest::newRow("read-only elsewhere") << "/media/cle" << false << docs << docs;
    QTest::newRow("terminal in a folder of one's own")
        << "/home/prof/cours" << true << docs << "/home/prof/cours";
    QTest::newRow("a name that only starts like home")
        << "/home/professeur" << true << docs << "/home/professeur";
    QTest::newRow("no documents folder known") << "/home/prof" << true << ""
                                               << "/home/prof";
}

void TestProgramFolder::startingFolder() {
    QFETCH(QString, current);
    QFETCH(bool, writable);
    QFETCH(QString, documents);
    QFETCH(QString, expected);
    QCOMPARE(platform::chooseStartingFolder(current, QStringLiteral("/home/prof"), documents,
                                            QStringLiteral("/usr/share/thermivo/"), writable),
             expected);
}

QTEST_GUILESS_MAIN(TestProgramFolder)
#include "tst_programfolder.moc"
