#include "mainwindow/intermodule.h"
#include "mainwindow/startup.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestStartup : public QObject {
    Q_OBJECT
private slots:
    void sizing_data();
    void sizing();
    void welcomeSegments_data();
    void welcomeSegments();
    void welcomeTotals();
    void runningRecord();
    void exerciseRequest_data();
    void exerciseRequest();
    void damagedOrLockedFile();
};

void TestStartup::sizing_data() {
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<bool>("resized");
    QTest::addColumn<QRect>("geometry");
    QTest::newRow("850 keeps the designed size") << QSize(850, 1000) << false << QRect();
    QTest::newRow("851 centres") << QSize(851, 700) << true << QRect(25, 50, 800, 600);
    QTest::newRow("1024x768") << QSize(1024, 768) << true << QRect(112, 84, 800, 600);
    QTest::newRow("640x480") << QSize(640, 480) << false << QRect();
}

void TestStartup::sizing() {
    QFETCH(QSize, screen);
    QFETCH(bool, resized);
    QFETCH(QRect, geometry);
    const auto g = mainWindowGeometry(screen);
    QCOMPARE(g.has_value(), resized);
    if (resized)
        QCOMPARE(*g, geometry);
}

void TestStartup::welcomeSegments_data() {
    QTest::addColumn<int>("segment");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("format");
    // CR LF counts as two characters in the selection positions.
    QTest::newRow("title") << 1 << 0 << 10 << 9;
    QTest::newRow("leading CR LF") << 2 << 10 << 73 << 0;
    QTest::newRow("how to") << 4 << 175 << 28 << 6;
    QTest::newRow("blue sentence") << 8 << 546 << 108 << 6;
    QTest::newRow("Exercices") << 12 << 803 << 9 << 1;
    QTest::newRow("Prise en main") << 15 << 890 << 14 << 1;
    QTest::newRow("last") << 16 << 904 << 23 << 0;
}

void TestStartup::welcomeSegments() {
    QFETCH(int, segment);
    QFETCH(int, start);
    QFETCH(int, length);
    QFETCH(int, format);
    const auto segs = ::welcomeSegments();
    const WelcomeSegment& s = segs.at(static_cast<std::size_t>(segment - 1));
    QCOMPARE(s.selStart, start);
    QCOMPARE(s.selLength, length);
    QCOMPARE(s.format, format);
}

void TestStartup::welcomeTotals() {
    const auto segs = ::welcomeSegments();
    QCOMPARE(segs.size(), std::size_t(16));
    QString all;
    for (const auto& s : segs)
        all += s.text;
    QCOMPARE(all.size(), 927);
    QVERIFY(all.startsWith(QStringLiteral("Thermivo\r\n\r\nCette application permet d'établir")));
    QVERIFY(all.endsWith(QStringLiteral("l'activité Prise en main dans le menu Exercices.")));
    QCOMPARE(
        defaultHint(),
        QStringLiteral(
            "Vous pouvez modifier les paramètres,\r\nouvrir une configuration ou un exercice"));
}

static QByteArray record(const QString& path, int n) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    f.seek((n - 1) * 128);
    return f.read(128);
}

void TestStartup::runningRecord() {
    QTemporaryDir dir;
    const InterModuleFile file(dir.path() + QLatin1Char('/'));
    file.announceRunning();
    QByteArray r18 = record(file.path(), 18);
    QCOMPARE(r18.size(), 128);
    QCOMPARE(r18.left(5), QByteArray("\x03\x00OUI", 5));
    QCOMPARE(QFileInfo(file.path()).size(), 18 * 128);
    file.announceStopped();
    QCOMPARE(record(file.path(), 18).left(5), QByteArray("\x03\x00NON", 5));
}

void TestStartup::exerciseRequest_data() {
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QString>("expected");
    QTest::newRow("a name") << QByteArray("\x0b\x00"
                                          "exos\\e1.E31",
                                          14)
                            << QStringLiteral("exos\\e1.E31");
    QTest::newRow("blanks only") << QByteArray("\x03\x00   ", 5) << QString();
    QTest::newRow("padded") << QByteArray("\x06\x00 a.E31", 8) << QStringLiteral("a.E31");
    QTest::newRow("length too large") << QByteArray("\xff\x00"
                                                    "abc",
                                                    5)
                                      << QString();
}

void TestStartup::exerciseRequest() {
    QFETCH(QByteArray, stored);
    QFETCH(QString, expected);
    QTemporaryDir dir;
    const InterModuleFile file(dir.path() + QLatin1Char('/'));
    {
        QFile f(file.path());
        QVERIFY(f.open(QIODevice::WriteOnly));
        QByteArray all(31 * 128, '\0');
        all.replace(30 * 128, stored.size(), stored);
        f.write(all);
    }
    QCOMPARE(file.takeExerciseRequest(), expected);
    // Emptied once read: the request opens only once.
    QCOMPARE(record(file.path(), 31).left(2), QByteArray("\x00\x00", 2));
    QCOMPARE(file.takeExerciseRequest(), QString());
}

void TestStartup::damagedOrLockedFile() {
    QTemporaryDir dir;
    const InterModuleFile missing(dir.path() + QStringLiteral("/nowhere/"));
    missing.announceRunning(); // folder absent: nothing happens, nothing throws
    QCOMPARE(missing.takeExerciseRequest(), QString());

    const InterModuleFile shortFile(dir.path() + QLatin1Char('/'));
    {
        QFile f(shortFile.path());
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("xyz");
    }
    QCOMPARE(shortFile.takeExerciseRequest(), QString());
    QFile::setPermissions(shortFile.path(), QFile::ReadOwner);
    shortFile.announceStopped(); // read-only: ignored
    QFile::setPermissions(shortFile.path(), QFile::ReadOwner | QFile::WriteOwner);
}

QTEST_APPLESS_MAIN(TestStartup)
#include "tst_startup.moc"
