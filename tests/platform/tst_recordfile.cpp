#include "platform/recordfile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using platform::RecordFile;
using Error = RecordFile::Error;
Q_DECLARE_METATYPE(RecordFile::Error)

class TestRecordFile : public QObject {
    Q_OBJECT
private slots:
    void init() { QFile::remove(path()); }
    void writeLayout_data();
    void writeLayout();
    void readRecords_data();
    void readRecords();
    void writeFailures();
    void rawBytes();

private:
    QString path() const { return dir_.filePath(QStringLiteral("f.bin")); }
    QTemporaryDir dir_;
};

namespace {
const QByteArray Missing = "<missing>"; // no file at all

const auto zeros = [](int n) { return QByteArray(n, '\0'); };
const auto hex = [](const char* h) { return QByteArray::fromHex(h); };

void store(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    if (bytes != Missing)
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size());
}

QByteArray load(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : Missing;
}
} // namespace

void TestRecordFile::writeLayout_data() {
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<int>("record");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Error>("error");
    QTest::addColumn<QByteArray>("after");

    const Error ok = Error::None;
    const QByteArray oui = hex("03004f5549") + zeros(123);
    QTest::newRow("file created") << Missing << 1 << "OUI" << ok << oui;
    QTest::newRow("empty text, padded before")
        << Missing << 31 << "" << ok << zeros(30 * 128) + hex("0000") + zeros(126);
    QTest::newRow("windows-1252 bytes")
        << Missing << 1 << "€œ’é" << ok << hex("0400809c92e9") + zeros(122);
    QTest::newRow("126 bytes fit")
        << Missing << 1 << QString(126, u'x') << ok << hex("7e00") + QByteArray(126, 'x');

    // "Combustion" (length 10) overwritten by "OUI": the old tail stays, record 1 untouched.
    const QByteArray longer = hex("0a00") + "Combustion" + zeros(116);
    QTest::newRow("short over long keeps tail")
        << longer + longer << 2 << "OUI" << ok
        << longer + hex("03004f5549") + "bustion" + zeros(116);
    // A file ending inside the record: the old bytes stay, the rest becomes zeros.
    QTest::newRow("partial record")
        << QByteArray(200, '\xAA') << 2 << "A" << ok
        << QByteArray(128, '\xAA') + hex("0100") + "A" + QByteArray(69, '\xAA') + zeros(56);

    // Refused: nothing created, nothing changed.
    QTest::newRow("127 bytes") << oui << 1 << QString(127, u'x') << Error::TooLong << oui;
    QTest::newRow("record 0") << Missing << 0 << "OUI" << Error::BadRecordNumber << Missing;
    QTest::newRow("record beyond 2 GiB")
        << Missing << RecordFile::MaxRecordNumber + 1 << "OUI" << Error::BadRecordNumber << Missing;
}

void TestRecordFile::writeLayout() {
    QFETCH(QByteArray, before);
    QFETCH(int, record);
    QFETCH(QString, text);
    QFETCH(Error, error);
    QFETCH(QByteArray, after);
    store(path(), before);
    QCOMPARE(RecordFile(path()).writeText(record, text), error);
    QCOMPARE(load(path()).toHex(), after.toHex());
    if (error == Error::None)
        QCOMPARE(RecordFile(path()).readText(record).value_or("<failed>"), text);
}

void TestRecordFile::readRecords_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("record");
    QTest::addColumn<Error>("error");
    QTest::addColumn<QString>("text");

    const QByteArray oui = hex("03004f5549") + zeros(123);
    QTest::newRow("record 2") << zeros(128) + hex("0500") + "TERVO" << 2 << Error::None << "TERVO";
    QTest::newRow("filler ignored") << hex("0300") + "OUIXYZ" << 1 << Error::None << "OUI";
    QTest::newRow("length field only") << zeros(128) + hex("0000") << 2 << Error::None << "";
    QTest::newRow("missing file") << Missing << 1 << Error::CannotOpen << "";
    QTest::newRow("short file") << hex("03") << 1 << Error::MissingRecord << "";
    QTest::newRow("past the end") << oui << 2 << Error::MissingRecord << "";
    QTest::newRow("length 127") << hex("7f00") + QByteArray(126, 'z') << 1 << Error::BadLength
                                << "";
    QTest::newRow("big-endian 3") << hex("0003") + "OUI" + zeros(123) << 1 << Error::BadLength
                                  << "";
    QTest::newRow("text past end") << hex("05004f5549") << 1 << Error::BadLength << "";
    QTest::newRow("record 0") << oui << 0 << Error::BadRecordNumber << "";
}

void TestRecordFile::readRecords() {
    QFETCH(QByteArray, content);
    QFETCH(int, record);
    QFETCH(Error, error);
    QFETCH(QString, text);
    store(path(), content);
    Error got = Error::TooLong;
    const std::optional<QString> result = RecordFile(path()).readText(record, &got);
    QCOMPARE(got, error);
    QCOMPARE(result.value_or("<failed>"), error == Error::None ? text : "<failed>");
}

void TestRecordFile::writeFailures() {
    QCOMPARE(RecordFile(dir_.path()).writeText(1, "OUI"), Error::CannotOpen);
    // Opens fine, every write fails: the failure must come back as a value.
    const RecordFile full(QStringLiteral("/dev/full"));
    QCOMPARE(full.writeText(18, "OUI"), Error::CannotWrite);
    Error e = Error::None;
    QVERIFY(!full.readText(1, &e));
    QCOMPARE(e, Error::CannotOpen);
}

void TestRecordFile::rawBytes() {
    const RecordFile file(path());
    QCOMPARE(file.recordCount(), 0);
    store(path(), QByteArray(257, '\x11'));
    QCOMPARE(file.recordCount(), 3);
    QCOMPARE(file.writeBytes(2, hex("01020304")), Error::None);
    QCOMPARE(file.readBytes(2, 6).value_or("x").toHex(), QByteArray("010203041111"));
    Error e = Error::None;
    QVERIFY(!file.readBytes(3, 2, &e));
    QCOMPARE(e, Error::MissingRecord);
    QCOMPARE(file.writeBytes(1, QByteArray(129, 'x')), Error::TooLong);
}

QTEST_APPLESS_MAIN(TestRecordFile)
#include "tst_recordfile.moc"
