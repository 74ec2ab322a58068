#include "platform/cp1252.h"

#include <QTest>

using platform::fromCp1252;
using platform::toCp1252;

class TestCp1252 : public QObject {
    Q_OBJECT
private slots:
    void everyByteRoundTrips();
    void highRange_data();
    void highRange();
    void encode_data();
    void encode();
    void decodeText();
};

void TestCp1252::everyByteRoundTrips() {
    QByteArray all;
    for (int b = 0; b < 256; ++b)
        all += static_cast<char>(b);
    const QString text = fromCp1252(all);
    QCOMPARE(text.size(), 256);
    QCOMPARE(toCp1252(text), all);
    // Outside 0x80-0x9F a byte is the code point of the same value.
    for (int b = 0; b < 256; ++b)
        if (b < 0x80 || b > 0x9F)
            QCOMPARE(text[b].unicode(), char16_t(b));
}

void TestCp1252::highRange_data() {
    QTest::addColumn<int>("byte");
    QTest::addColumn<int>("codePoint");
    // Written out independently of the table in the program.
    const char16_t expected[32] = {
        u'€', 0x81, u'‚', u'ƒ', u'„', u'…', u'†', u'‡', u'ˆ', u'‰', u'Š',
        u'‹', u'Œ', 0x8D, u'Ž', 0x8F, 0x90, u'‘', u'’', u'“', u'”', u'•',
        u'–', u'—', u'˜', u'™', u'š', u'›', u'œ', 0x9D, u'ž', u'Ÿ',
    };
    for (int i = 0; i < 32; ++i)
        QTest::addRow("0x%02X", 0x80 + i) << 0x80 + i << int(expected[i]);
}

void TestCp1252::highRange() {
    QFETCH(int, byte);
    QFETCH(int, codePoint);
    const QString s = fromCp1252(QByteArray(1, static_cast<char>(byte)));
    QCOMPARE(s.size(), 1);
    QCOMPARE(int(s[0].unicode()), codePoint);
    QCOMPARE(toCp1252(s), QByteArray(1, static_cast<char>(byte)));
}

void TestCp1252::encode_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("hex");

    QTest::newRow("euro") << QStringLiteral("€") << QByteArray("80");
    QTest::newRow("oe ligature") << QStringLiteral("œ") << QByteArray("9c");
    QTest::newRow("right quote") << QStringLiteral("’") << QByteArray("92");
    QTest::newRow("e acute") << QStringLiteral("é") << QByteArray("e9");
    QTest::newRow("agrave ccedil") << QStringLiteral("àç") << QByteArray("e0e7");
    QTest::newRow("no-break space") << QStringLiteral("\u00A0") << QByteArray("a0");
    QTest::newRow("y diaeresis") << QStringLiteral("ÿ") << QByteArray("ff");
    QTest::newRow("ascii") << QStringLiteral("TERVO") << QByteArray("544552564f");
    QTest::newRow("sentence") << QStringLiteral("Cœur à 5 € – l’été")
                              << QByteArray("439c757220e0203520802096206c92e974e9");
    QTest::newRow("C1 0x80 taken by euro") << QStringLiteral("\u0080") << QByteArray("3f");
    QTest::newRow("C1 0x81 kept") << QStringLiteral("\u0081") << QByteArray("81");
    QTest::newRow("A macron") << QStringLiteral("Ā") << QByteArray("3f");
    QTest::newRow("arrow") << QStringLiteral("a→b") << QByteArray("613f62");
    QTest::newRow("greek delta") << QStringLiteral("Δ") << QByteArray("3f");
    QTest::newRow("outside BMP one mark")
        << QString::fromUtf8("x\U0001F600y") << QByteArray("783f79");
    QTest::newRow("lone surrogate") << QString(QChar(0xD800)) << QByteArray("3f");
    QTest::newRow("empty") << QString() << QByteArray();
}

void TestCp1252::encode() {
    QFETCH(QString, text);
    QFETCH(QByteArray, hex);
    QCOMPARE(toCp1252(text).toHex(), hex);
}

void TestCp1252::decodeText() {
    QCOMPARE(fromCp1252(QByteArray::fromHex("809c92e9")), QStringLiteral("€œ’é"));
    QCOMPARE(fromCp1252(QByteArray::fromHex("4e4f4e")), QStringLiteral("NON"));
    QCOMPARE(fromCp1252(QByteArray("a\0b", 3)), QString(QStringLiteral("a") + QChar(0) + u'b'));
}

QTEST_APPLESS_MAIN(TestCp1252)
#include "tst_cp1252.moc"
