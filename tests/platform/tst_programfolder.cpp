#include "platform/programfolder.h"

#include <QCoreApplication>
#include <QTest>

class TestProgramFolder : public QObject {
    Q_OBJECT
private slots:
    void resolve_data();
    void resolve();
    void precedence();
};

void TestProgramFolder::resolve_data() {
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << "/opt/thermivo/"
                           << "tervox.PEM"
                           << "/opt/thermivo/tervox.PEM";
    QTest::newRow("folder without separator") << "/opt/thermivo"
                                              << "a.E31"
                                              << "/opt/thermivo/a.E31";
    QTest::newRow("written on Windows") << "/opt/thermivo/"
                                        << "exos\\chap1\\e1.E31"
                                        << "/opt/thermivo/exos/chap1/e1.E31";
    QTest::newRow("folder written on Windows") << "C:\\Thermivo"
                                               << "x.C10"
                                               << "C:/Thermivo/x.C10";
    QTest::newRow("absolute") << "/opt/thermivo/"
                              << "/home/eleve/x.C10"
                              << "/home/eleve/x.C10";
    QTest::newRow("drive letter kept relative") << "/opt/t/"
                                                << "C:\\exos\\e.E31"
                                                << "/opt/t/exos/e.E31";
}

void TestProgramFolder::resolve() {
    QFETCH(QString, folder);
    QFETCH(QString, name);
    QFETCH(QString, expected);
    QCOMPARE(platform::resolveInFolder(folder, name), expected);
}

void TestProgramFolder::precedence() {
    qunsetenv("THERMIVO_PROGRAM_FOLDER");
    platform::setProgramFolderOverride(QString());
    QCOMPARE(platform::programFolder(), QCoreApplication::applicationDirPath() + QLatin1Char('/'));
    qputenv("THERMIVO_PROGRAM_FOLDER", "/tmp/from-env");
    QCOMPARE(platform::programFolder(), QStringLiteral("/tmp/from-env/"));
    platform::setProgramFolderOverride(QStringLiteral("/tmp/from-option/"));
    QCOMPARE(platform::programFolder(), QStringLiteral("/tmp/from-option/"));
    platform::setProgramFolderOverride(QString());
}

QTEST_GUILESS_MAIN(TestProgramFolder)
#include "tst_programfolder.moc"
