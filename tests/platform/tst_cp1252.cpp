#include "platform/cp1252.h"

#include <QTest>

using platform::fromCp1252;
using platform::toCp1252;

class TestCp1252 : public QObject {
    Q_OBJECT
private slots:
    void everyByteRoundTrips();
    void unmappable_data();
    void unmappable();
};

void TestCp1252::everyByteRoundTrips() {
    // Bytes 0x80-0x9F, written out independently of the table in the program; every other
    // byte is the code point of the same value.
    const char16_t high[32] = {
        u'€', 0x81, u'‚', u'ƒ', u'„', u'…', u'†', u'‡', u'ˆ', u'‰', u'Š',
        u'‹', u'Œ', 0x8D, u'Ž', 0x8F, 0x90, u'‘', u'’', u'“', u'”', u'•',
        u'–', u'—', u'˜', u'™', u'š', u'›', u'œ', 0x9D, u'ž', u'Ÿ',
    };
    QByteArray all;
    QString expected;
    for (int b = 0; b < 256; ++b) {
        all += static_cast<char>(b);
        expected += QChar(b >= 0x80 && b <= 0x9F ? high[b - 0x80] : char16_t(b));
    }
    QCOMPARE(fromCp1252(all), expected);
    QCOMPARE(toCp1252(expected), all);
}

void TestCp1252::unmappable_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("hex");

    QTest::newRow("C1 0x80 taken by euro") << QStringLiteral("\u0080") << QByteArray("3f");
    QTest::newRow("arrow") << QStringLiteral("a→b") << QByteArray("613f62");
    QTest::newRow("outside BMP one mark")
        << QString::fromUtf8("x\U0001F600y") << QByteArray("783f79");
    QTest::newRow("lone surrogate") << QString(QChar(0xD800)) << QByteArray("3f");
}

void TestCp1252::unmappable() {
    QFETCH(QString, text);
    QFETCH(QByteArray, hex);
    QCOMPARE(toCp1252(text).toHex(), hex);
}

QTEST_APPLESS_MAIN(TestCp1252)
#include "tst_cp1252.moc"
