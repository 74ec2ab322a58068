#include "configurations/configurationfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

using configurations::ConfigurationData;
Q_DECLARE_METATYPE(ConfigurationData)

namespace {

// One record as written: length, text, zero filler.
QByteArray record(const QByteArray& text) {
    QByteArray r(128, '\0');
    r[0] = static_cast<char>(text.size());
    r.replace(2, text.size(), text);
    return r;
}

QByteArray records(const QList<QByteArray>& texts) {
    QByteArray out;
    for (const QByteArray& t : texts)
        out += record(t);
    return out;
}

ConfigurationData data(int index, const QString& a, const QString& b, std::array<bool, 3> checks,
                       bool isolated) {
    ConfigurationData d;
    d.listIndex = static_cast<std::int16_t>(index);
    d.amounts = {a, b};
    d.checked = checks;
    d.isolated = isolated;
    return d;
}

QByteArray load(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

void store(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size());
}

} // namespace

class TestConfigurationFile : public QObject {
    Q_OBJECT
private slots:
    void encode_data();
    void encode();
    void textTooLong();
    void listIndex_data();
    void listIndex();
    void saveName_data();
    void saveName();
    void writeFailuresKeepTheOldFile_data();
    void writeFailuresKeepTheOldFile();
    void fullDiskKeepsTheOldFile();
    void reading();
};

void TestConfigurationFile::encode_data() {
    QTest::addColumn<ConfigurationData>("data");
    QTest::addColumn<QByteArray>("bytes");

    // The fourth reaction, 2,5 and 1,0 as the fields show them, only the third box checked,
    // the isolated system.
    QTest::newRow("fourth reaction, isolated")
        << data(3, QStringLiteral("  2,5"), QStringLiteral("  1,0"), {false, false, true}, true)
        << QByteArray::fromHex("0500544552564f") + QByteArray(121, '\0') +
               QByteArray::fromHex("02002033") + QByteArray(124, '\0') +
               QByteArray::fromHex("05002020322c35") + QByteArray(121, '\0') +
               QByteArray::fromHex("05002020312c30") + QByteArray(121, '\0') +
               QByteArray::fromHex("010030") + QByteArray(125, '\0') +
               QByteArray::fromHex("010030") + QByteArray(125, '\0') +
               QByteArray::fromHex("010031") + QByteArray(125, '\0') +
               QByteArray::fromHex("010031") + QByteArray(125, '\0');
    QTest::newRow("start-up situation")
        << data(0, QStringLiteral("1,0"), QStringLiteral("1,0"), {false, false, false}, false)
        << records({"TERVO", " 0", "1,0", "1,0", "0", "0", "0", "0"});
    QTest::newRow("last reaction, big amount, every box")
        << data(7, QStringLiteral(" 100 000,0"), QStringLiteral("  0,125"), {true, true, true},
                false)
        << records({"TERVO", " 7", " 100 000,0", "  0,125", "1", "1", "1", "0"});
    QTest::newRow("amount texts kept as typed, in Windows-1252")
        << data(1, QStringLiteral("12,5€"), QString(), {true, false, false}, true)
        << records({"TERVO", " 1", "12,5\x80", "", "1", "0", "0", "1"});
}

void TestConfigurationFile::encode() {
    QFETCH(ConfigurationData, data);
    QFETCH(QByteArray, bytes);
    QCOMPARE(bytes.size(), 1024);
    const auto encoded = configurations::encodeConfiguration(data);
    QVERIFY(encoded);
    QCOMPARE(encoded->toHex(), bytes.toHex());
    // Read back: the same situation.
    const auto decoded = configurations::decodeConfiguration(*encoded);
    QVERIFY(decoded);
    QVERIFY(*decoded == data);
}

void TestConfigurationFile::textTooLong() {
    int failed = -1;
    ConfigurationData d = data(0, QString(126, u'1'), QString(127, u'2'), {}, false);
    QVERIFY(!configurations::encodeConfiguration(d, &failed));
    QCOMPARE(failed, 4);
    d.amounts[1].chop(1);
    QVERIFY(configurations::encodeConfiguration(d, &failed));
    QCOMPARE(failed, 0);
}

void TestConfigurationFile::listIndex_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("index"); // -1: not a list position

    QTest::newRow("written form") << " 3" << 3;
    QTest::newRow("last") << " 7" << 7;
    QTest::newRow("past the list") << " 8" << -1;
    QTest::newRow("negative") << "-1" << -1;
    QTest::newRow("half goes to even, down") << "2.5" << 2;
    QTest::newRow("half goes to even, up") << "3.5" << 4;
    QTest::newRow("small negative rounds to 0") << "-.4" << 0;
    QTest::newRow("no digits reads 0") << "abc" << 0;
    QTest::newRow("too large to read") << "1E400" << -1;
}

void TestConfigurationFile::listIndex() {
    QFETCH(QString, text);
    QFETCH(int, index);
    const auto got = configurations::listIndexFromText(text);
    QCOMPARE(got ? *got : -1, index);
}

void TestConfigurationFile::saveName_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("path"); // empty: no name left

    const QString f = QStringLiteral("/data/cours");
    QTest::newRow("bare name goes into the folder")
        << "essai" << f + "/essai.C10" << f + "/essai.C10";
    QTest::newRow("typed extension dropped") << "essai.txt" << f + "/essai.C10" << f + "/essai.C10";
    QTest::newRow("cut at the first dot") << "a.b.C10" << f + "/a.C10" << f + "/a.C10";
    QTest::newRow("blanks trimmed, also before the dot")
        << "  essai .txt " << f + "/essai.C10" << f + "/essai.C10";
    QTest::newRow("full path kept, folders keep their dots")
        << "/home/jean.dupont/Documents/essai"
        << "/home/jean.dupont/Documents/essai.C10"
        << "/home/jean.dupont/Documents/essai.C10";
    QTest::newRow("hidden folder on the way") << "/home/jean/.local/share/x.tar.gz"
                                              << "/home/jean/.local/share/x.C10"
                                              << "/home/jean/.local/share/x.C10";
    QTest::newRow("relative path counts from the folder")
        << "sous/essai.c10" << f + "/sous/essai.C10" << f + "/sous/essai.C10";
    QTest::newRow("backslash is a character here") << "a\\b" << f + "/a\\b.C10" << f + "/a\\b.C10";
    QTest::newRow("empty") << ""
                           << ""
                           << "";
    QTest::newRow("blanks only") << "   "
                                 << ""
                                 << "";
    QTest::newRow("extension only") << ".C10"
                                    << ""
                                    << "";
    QTest::newRow("a folder, no name") << "/tmp/"
                                       << "/tmp/"
                                       << "";
    QTest::newRow("hidden name cut to nothing") << "/tmp/.essai"
                                                << "/tmp/"
                                                << "";
}

void TestConfigurationFile::saveName() {
    QFETCH(QString, typed);
    QFETCH(QString, text);
    QFETCH(QString, path);
    const auto name = configurations::saveNameFor(typed, QStringLiteral("/data/cours"));
    QCOMPARE(name.text, text);
    QCOMPARE(name.path, path);
}

void TestConfigurationFile::writeFailuresKeepTheOldFile_data() {
    QTest::addColumn<QString>("name"); // relative to a fresh folder

    QTest::newRow("a folder of that name") << "dossier.C10";
    QTest::newRow("missing folder") << "absent/essai.C10";
    QTest::newRow("below a file") << "old.C10/essai.C10";
    QTest::newRow("name too long for the file system") << QString(300, u'n') + ".C10";
    QTest::newRow("read-only folder") << "lecture/old.C10";
}

void TestConfigurationFile::writeFailuresKeepTheOldFile() {
    QFETCH(QString, name);
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("dossier.C10")));
    const QByteArray old = "previous content";
    store(dir.filePath(QStringLiteral("old.C10")), old);
    const bool readOnly = name.startsWith(QLatin1String("lecture/"));
    if (readOnly) {
        if (geteuid() == 0)
            QSKIP("the administrator writes into read-only folders");
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("lecture")));
        store(dir.filePath(name), old);
        QFile::setPermissions(dir.filePath(QStringLiteral("lecture")),
                              QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    }
    const QByteArray bytes = records({"TERVO", " 0", "1", "1", "0", "0", "0", "0"});
    const bool written = configurations::writeConfigurationFile(dir.filePath(name), bytes);
    if (readOnly) {
        QCOMPARE(load(dir.filePath(name)), old);
        QCOMPARE(
            QDir(dir.filePath(QStringLiteral("lecture"))).entryList(QDir::Files | QDir::Hidden),
            QStringList({QStringLiteral("old.C10")}));
        QFile::setPermissions(dir.filePath(QStringLiteral("lecture")), QFileDevice::ReadOwner |
                                                                           QFileDevice::WriteOwner |
                                                                           QFileDevice::ExeOwner);
    }
    QVERIFY(!written);
    QCOMPARE(load(dir.filePath(QStringLiteral("old.C10"))), old);
    QVERIFY(QFileInfo(dir.filePath(QStringLiteral("dossier.C10"))).isDir());
    // Nothing left behind beside them.
    QStringList expected = {QStringLiteral("dossier.C10"), QStringLiteral("old.C10")};
    if (readOnly)
        expected.insert(1, QStringLiteral("lecture"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
             expected);
}

void TestConfigurationFile::fullDiskKeepsTheOldFile() {
    // A file size limit makes every write past 100 bytes fail as a full disk would.
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("essai.C10"));
    const QByteArray old = records({"TERVO", " 5", "old", "old", "1", "1", "1", "1"});
    store(path, old);
    const QByteArray bytes = records({"TERVO", " 0", "new", "new", "0", "0", "0", "0"});

    rlimit saved{};
    QVERIFY(getrlimit(RLIMIT_FSIZE, &saved) == 0);
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = saved;
    small.rlim_cur = 100;
    QVERIFY(setrlimit(RLIMIT_FSIZE, &small) == 0);
    const bool written = configurations::writeConfigurationFile(path, bytes);
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previousHandler);

    QVERIFY(!written);
    QCOMPARE(load(path), old);
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList({"essai.C10"}));

    // With room again the new file replaces the old one whole.
    QVERIFY(configurations::writeConfigurationFile(path, bytes));
    QCOMPARE(load(path), bytes);
}

void TestConfigurationFile::reading() {
    QTemporaryDir dir;
    const QString missing = dir.filePath(QStringLiteral("absent.C10"));
    QVERIFY(!configurations::readConfigurationFile(missing));
    QVERIFY(!QFileInfo::exists(missing)); // reading never creates the file
    QVERIFY(!configurations::configurationFileExists(missing));

    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("dossier.C10")));
    QVERIFY(!configurations::readConfigurationFile(dir.filePath(QStringLiteral("dossier.C10"))));
    QVERIFY(!configurations::configurationFileExists(dir.filePath(QStringLiteral("dossier.C10"))));

    // Only the first eight records are read.
    const QString big = dir.filePath(QStringLiteral("big.C10"));
    store(big, QByteArray(5000, 'x'));
    QCOMPARE(configurations::readConfigurationFile(big)->size(), 1024);

    // A name written with "\" finds the file.
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("sous")));
    store(dir.filePath(QStringLiteral("sous/a.C10")), "abc");
    const QString windowsName = dir.path() + QStringLiteral("\\sous\\a.C10");
    QVERIFY(configurations::configurationFileExists(windowsName));
    QCOMPARE(*configurations::readConfigurationFile(windowsName), QByteArray("abc"));
}

QTEST_GUILESS_MAIN(TestConfigurationFile)
#include "tst_configurationfile.moc"
