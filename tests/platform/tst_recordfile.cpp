#include "platform/recordfile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

using platform::RecordFile;
using Error = RecordFile::Error;
Q_DECLARE_METATYPE(RecordFile::Error)

class TestRecordFile : public QObject {
    Q_OBJECT
private slots:
    void init();
    void writeLayout_data();
    void writeLayout();
    void readRecords_data();
    void readRecords();
    void writeRefused_data();
    void writeRefused();
    void readOnlyFile();
    void deviceFull();
    void textRoundTrip_data();
    void textRoundTrip();
    void rawBytes();
    void recordCount_data();
    void recordCount();

private:
    QString path(const char* name = "f.bin") const {
        return dir_->filePath(QString::fromLatin1(name));
    }
    std::unique_ptr<QTemporaryDir> dir_;
};

namespace {
QByteArray zeros(int n) {
    return QByteArray(n, '\0');
}

QByteArray hex(const char* h) {
    return QByteArray::fromHex(h);
}

void store(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(f.write(bytes), bytes.size());
}

QByteArray load(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return "<missing>";
    return f.readAll();
}
} // namespace

void TestRecordFile::init() {
    dir_ = std::make_unique<QTemporaryDir>();
    QVERIFY(dir_->isValid());
}

void TestRecordFile::writeLayout_data() {
    QTest::addColumn<QByteArray>("before"); // "<missing>" for no file
    QTest::addColumn<int>("record");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("after");

    const QByteArray oui = hex("03004f5549");
    QTest::newRow("new file record 1") << QByteArray("<missing>") << 1 << "OUI" << oui + zeros(123);
    QTest::newRow("new file record 18")
        << QByteArray("<missing>") << 18 << "OUI" << zeros(17 * 128) + oui + zeros(123);
    QTest::newRow("empty text") << QByteArray("<missing>") << 31 << ""
                                << zeros(30 * 128) + hex("0000") + zeros(126);
    QTest::newRow("windows-1252 bytes")
        << QByteArray("<missing>") << 1 << "€œ’é" << hex("0400809c92e9") + zeros(122);
    QTest::newRow("unmappable as ?")
        << QByteArray("<missing>") << 1 << "a→b" << hex("0300613f62") + zeros(123);

    // "Combustion" (length 10) overwritten by "OUI": the old tail stays.
    const QByteArray longer = hex("0a00") + "Combustion" + zeros(116);
    QTest::newRow("short over long keeps tail")
        << longer + longer << 2 << "OUI" << longer + hex("03004f5549") + "bustion" + zeros(116);

    // Existing records around the written one are not touched, the size does not change.
    const QByteArray filled(3 * 128, '\xAA');
    QByteArray middle = filled;
    middle.replace(128, 5, oui);
    QTest::newRow("middle record") << filled << 2 << "OUI" << middle;

    // A file ending inside the record: the old bytes stay, the rest becomes zeros.
    QTest::newRow("partial record")
        << QByteArray(200, '\xAA') << 2 << "A"
        << QByteArray(128, '\xAA') + hex("0100") + "A" + QByteArray(69, '\xAA') + zeros(56);
    QTest::newRow("gap padded") << QByteArray(10, '\x55') << 3 << "NON"
                                << QByteArray(10, '\x55') + zeros(246) + hex("03004e4f4e") +
                                       zeros(123);

    const QString max126(126, u'x');
    QTest::newRow("126 bytes fit")
        << QByteArray("<missing>") << 1 << max126 << hex("7e00") + QByteArray(126, 'x');
}

void TestRecordFile::writeLayout() {
    QFETCH(QByteArray, before);
    QFETCH(int, record);
    QFETCH(QString, text);
    QFETCH(QByteArray, after);
    if (before != "<missing>")
        store(path(), before);
    QCOMPARE(RecordFile(path()).writeText(record, text), Error::None);
    QCOMPARE(load(path()).toHex(), after.toHex());
}

void TestRecordFile::readRecords_data() {
    QTest::addColumn<QByteArray>("content"); // "<missing>" for no file
    QTest::addColumn<int>("record");
    QTest::addColumn<Error>("error");
    QTest::addColumn<QString>("text");

    const QByteArray oui = hex("03004f5549") + zeros(123);
    QTest::newRow("record 1") << oui << 1 << Error::None << "OUI";
    QTest::newRow("record 2") << zeros(128) + hex("0500") + "TERVO" << 2 << Error::None << "TERVO";
    QTest::newRow("filler ignored") << hex("0300") + "OUIXYZ" << 1 << Error::None << "OUI";
    QTest::newRow("zero length") << zeros(128) << 1 << Error::None << "";
    QTest::newRow("length field only") << zeros(128) + hex("0000") << 2 << Error::None << "";
    QTest::newRow("windows-1252") << hex("0400809c92e9") << 1 << Error::None << "€œ’é";
    QTest::newRow("126 exactly") << hex("7e00") + QByteArray(126, 'y') << 1 << Error::None
                                 << QString(126, u'y');

    QTest::newRow("missing file") << QByteArray("<missing>") << 1 << Error::CannotOpen << "";
    QTest::newRow("empty file") << QByteArray() << 1 << Error::MissingRecord << "";
    QTest::newRow("one byte") << hex("03") << 1 << Error::MissingRecord << "";
    QTest::newRow("past the end") << oui << 2 << Error::MissingRecord << "";
    QTest::newRow("far past the end") << oui << 31 << Error::MissingRecord << "";
    QTest::newRow("length 127") << hex("7f00") + QByteArray(126, 'z') << 1 << Error::BadLength
                                << "";
    QTest::newRow("length 0xFFFF") << hex("ffff") + zeros(126) << 1 << Error::BadLength << "";
    QTest::newRow("big-endian 3") << hex("0003") + "OUI" + zeros(123) << 1 << Error::BadLength
                                  << "";
    QTest::newRow("text cut by end") << hex("05004f5549") << 1 << Error::BadLength << "";
    QTest::newRow("record 0") << oui << 0 << Error::BadRecordNumber << "";
    QTest::newRow("record -1") << oui << -1 << Error::BadRecordNumber << "";
}

void TestRecordFile::readRecords() {
    QFETCH(QByteArray, content);
    QFETCH(int, record);
    QFETCH(Error, error);
    QFETCH(QString, text);
    if (content != "<missing>")
        store(path(), content);
    Error got = Error::TooLong;
    const std::optional<QString> result = RecordFile(path()).readText(record, &got);
    QCOMPARE(got, error);
    QCOMPARE(result.has_value(), error == Error::None);
    if (result)
        QCOMPARE(*result, text);
}

void TestRecordFile::writeRefused_data() {
    QTest::addColumn<QString>("where"); // "file", "folder" or "nowhere"
    QTest::addColumn<int>("record");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Error>("error");

    QTest::newRow("127 bytes") << "file" << 1 << QString(127, u'x') << Error::TooLong;
    QTest::newRow("127 after encoding")
        << "file" << 1 << QString(126, u'é') + u'€' << Error::TooLong;
    QTest::newRow("record 0") << "file" << 0 << "OUI" << Error::BadRecordNumber;
    QTest::newRow("record beyond 2 GiB")
        << "file" << RecordFile::MaxRecordNumber + 1 << "OUI" << Error::BadRecordNumber;
    QTest::newRow("a folder") << "folder" << 1 << "OUI" << Error::CannotOpen;
    QTest::newRow("missing folder") << "nowhere" << 1 << "OUI" << Error::CannotOpen;
}

void TestRecordFile::writeRefused() {
    QFETCH(QString, where);
    QFETCH(int, record);
    QFETCH(QString, text);
    QFETCH(Error, error);
    const QString target = where == "folder"    ? dir_->path()
                           : where == "nowhere" ? path("no/such/dir/f.bin")
                                                : path();
    const QByteArray before = load(target);
    QCOMPARE(RecordFile(target).writeText(record, text), error);
    // Nothing created, nothing changed.
    QCOMPARE(load(target), before);
}

void TestRecordFile::readOnlyFile() {
    const QByteArray content = hex("03004f5549") + zeros(123);
    store(path(), content);
    QFile::setPermissions(path(), QFileDevice::ReadOwner | QFileDevice::ReadUser);
    QFile probe(path());
    if (probe.open(QIODevice::ReadWrite))
        QSKIP("permissions do not bind this user (root)");
    const Error e = RecordFile(path()).writeText(18, "NON");
    QVERIFY(e == Error::CannotOpen || e == Error::CannotWrite);
    QCOMPARE(load(path()), content);
    QCOMPARE(RecordFile(path()).readText(1).value_or("?"), QStringLiteral("OUI"));
}

void TestRecordFile::deviceFull() {
    // Opens fine, every write fails: the failure must come back as a value.
    if (!QFile::exists("/dev/full"))
        QSKIP("no /dev/full here");
    const RecordFile full(QStringLiteral("/dev/full"));
    QCOMPARE(full.writeText(18, "OUI"), Error::CannotWrite);
    QCOMPARE(full.writeBytes(1, "x"), Error::CannotWrite);
    Error e = Error::None;
    QVERIFY(!full.readText(1, &e));
    QCOMPARE(e, Error::CannotOpen);
}

void TestRecordFile::textRoundTrip_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("signature") << "TERVO";
    QTest::newRow("amount with blanks") << "  2,5";
    QTest::newRow("grouped amount") << " 100 000,0";
    QTest::newRow("list index") << " 3";
    QTest::newRow("accents") << "Énergie libérée, cœur, l’éther, 5 €";
    QTest::newRow("controls kept") << QString("\u0081\u008D\u008F\u0090\u009D");
    QTest::newRow("empty") << "";
    QTest::newRow("max") << QString(126, u'Ÿ');
}

void TestRecordFile::textRoundTrip() {
    QFETCH(QString, text);
    const RecordFile file(path());
    QCOMPARE(file.writeText(5, "a much longer text that leaves a tail behind it"), Error::None);
    QCOMPARE(file.writeText(5, text), Error::None);
    Error e = Error::TooLong;
    QCOMPARE(file.readText(5, &e).value_or("<failed>"), text);
    QCOMPARE(e, Error::None);
    QCOMPARE(file.recordCount(), 5);
}

void TestRecordFile::rawBytes() {
    const RecordFile file(path());
    store(path(), QByteArray(256, '\x11'));
    QCOMPARE(file.writeBytes(2, hex("01020304")), Error::None);
    QCOMPARE(load(path()).toHex(),
             (QByteArray(128, '\x11') + hex("01020304") + QByteArray(124, '\x11')).toHex());
    QCOMPARE(file.readBytes(2, 6).value_or("x").toHex(), QByteArray("010203041111"));
    QCOMPARE(file.readBytes(1, 0).value_or("x"), QByteArray());

    Error e = Error::None;
    QVERIFY(!file.readBytes(3, 1, &e));
    QCOMPARE(e, Error::MissingRecord);
    QVERIFY(!file.readBytes(1, 129, &e));
    QCOMPARE(e, Error::BadLength);
    QVERIFY(!file.readBytes(0, 1, &e));
    QCOMPARE(e, Error::BadRecordNumber);
    QCOMPARE(file.writeBytes(1, QByteArray(129, 'x')), Error::TooLong);
    QCOMPARE(file.writeBytes(4, QByteArray(128, 'x')), Error::None);
    QCOMPARE(load(path()).size(), 512);
    QCOMPARE(load(path()).mid(256, 128), zeros(128));
}

void TestRecordFile::recordCount_data() {
    QTest::addColumn<int>("size"); // -1 for no file
    QTest::addColumn<int>("count");
    QTest::newRow("missing") << -1 << 0;
    QTest::newRow("empty") << 0 << 0;
    QTest::newRow("one byte") << 1 << 1;
    QTest::newRow("one record") << 128 << 1;
    QTest::newRow("partial second") << 129 << 2;
    QTest::newRow("eight records") << 1024 << 8;
}

void TestRecordFile::recordCount() {
    QFETCH(int, size);
    QFETCH(int, count);
    if (size >= 0)
        store(path(), zeros(size));
    QCOMPARE(RecordFile(path()).recordCount(), count);
}

QTEST_APPLESS_MAIN(TestRecordFile)
#include "tst_recordfile.moc"
