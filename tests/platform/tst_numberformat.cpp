#include "platform/numberformat.h"

#include <QTest>
#include <limits>

using platform::formatNumber;
using platform::formatTrimmed;
using platform::parseFrench;

class TestNumberFormat : public QObject {
    Q_OBJECT
private slots:
    void format_data();
    void format();
    void parse_data();
    void parse();
};

void TestNumberFormat::format_data() {
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("expected");

    const QString amount = QStringLiteral("### ### ##0.0##");
    const QString diagram = QStringLiteral("### ##0.0");
    const QString heat = QStringLiteral("### ### ### ##0.0#");
    const QString heatKj = QStringLiteral("### ### ### ##0");
    const QString sci = QStringLiteral("#.#######E+00");
    const QString table = QStringLiteral("### ### ##0.0## ##");

    // The patterns the screens use, with the results the old runtime gave.
    QTest::newRow("amount 0.5") << amount << 0.5 << "  0,5";
    QTest::newRow("amount 1234.5") << amount << 1234.5 << " 1 234,5";
    QTest::newRow("amount 1234567") << amount << 1234567.0 << "1 234 567,0";
    QTest::newRow("amount 0") << amount << 0.0 << "  0,0";
    QTest::newRow("amount 100000") << amount << 100000.0 << " 100 000,0";
    // Trimmed, the sign sits against the digits: "-401,0".
    QTest::newRow("amount -401") << amount << -401.0 << "  -401,0";
    QTest::newRow("diagram 1234.5") << diagram << 1234.5 << "1 234,5";
    QTest::newRow("diagram 1234567") << diagram << 1234567.0 << "1234 567,0";
    QTest::newRow("heat 1234.5") << heat << 1234.5 << "  1 234,5";
    QTest::newRow("heat 482/602") << heat << 482.0 / 602 << "   0,8";
    QTest::newRow("heat kJ 5210") << heatKj << 5210.0 << "  5 210";
    QTest::newRow("cursor 0.25") << "#############0.00" << 0.25 << "0,25";
    QTest::newRow("sci 1234.5") << sci << 1234.5 << "1,2345E+03";
    QTest::newRow("sci 0.000123") << sci << 0.000123 << "1,23E-04";
    QTest::newRow("table 1234.5") << table << 1234.5 << " 1 234,5 ";
    QTest::newRow("table 0.123456") << table << 0.123456 << "  0,123 46";

    // Sign: none when nothing but zeros shows, leading when no blank is left.
    QTest::newRow("amount -0.00001") << amount << -0.00001 << "  0,0";
    QTest::newRow("amount -1234567") << amount << -1234567.0 << "-1 234 567,0";
    QTest::newRow("sci -1234.5") << sci << -1234.5 << "-1,2345E+03";
    QTest::newRow("integer only -2.5") << "0" << -2.5 << "-3";

    // Rounding: half-up on the decimal digits, carries into new groups and surplus digits.
    QTest::newRow("amount 999.9996") << amount << 999.9996 << " 1 000,0";
    QTest::newRow("diagram 999999.96") << diagram << 999999.96 << "1000 000,0";
    QTest::newRow("amount 0.0005") << amount << 0.0005 << "  0,001";
    QTest::newRow("amount 1.0005") << amount << 1.0005 << "  1,001";
    QTest::newRow("heat kJ 2.5") << heatKj << 2.5 << "   3";
    QTest::newRow("amount 1e-300") << amount << 1e-300 << "  0,0";
    QTest::newRow("15 significant")
        << amount << 1.23456789012345678e20 << "123456789012346 000 000,0";

    // Exponent forms.
    QTest::newRow("sci 0.5") << sci << 0.5 << "5,E-01";
    QTest::newRow("sci 0") << sci << 0.0 << ",E+00";
    QTest::newRow("sci 9.99999999") << sci << 9.99999999 << "1,E+01";
    QTest::newRow("sci 1e100") << sci << 1e100 << "1,E+100";

    // Only the first point is the decimal comma; infinities and NaN show nothing.
    QTest::newRow("second point literal") << "0.0.0" << 1.25 << "1,2.5";
    QTest::newRow("infinity") << amount << std::numeric_limits<double>::infinity() << "";
    QTest::newRow("NaN") << sci << std::numeric_limits<double>::quiet_NaN() << "";
}

void TestNumberFormat::format() {
    QFETCH(QString, pattern);
    QFETCH(double, value);
    QFETCH(QString, expected);
    QCOMPARE(formatNumber(value, pattern), expected);
    QCOMPARE(formatTrimmed(value, pattern), expected.trimmed());
}

void TestNumberFormat::parse_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<double>("value");

    QTest::newRow("grouped") << "100 000,0" << true << 100000.0;
    QTest::newRow("formatted energy") << "  -401,0" << true << -401.0;
    QTest::newRow("blanks anywhere")
        << QString::fromUtf8("\t\u202F100\u00A0000,5\n") << true << 100000.5;
    QTest::newRow("sign then blank") << "- 3" << true << -3.0;
    QTest::newRow("comma first") << ",5" << true << 0.5;
    QTest::newRow("zero") << "0,0" << true << 0.0;
    QTest::newRow("exponent") << "1,5E3" << true << 1500.0;
    QTest::newRow("underflow") << "1e-400" << true << 0.0;
    QTest::newRow("empty") << "" << false << 0.0;
    QTest::newRow("trailing letters") << "12abc" << false << 0.0;
    QTest::newRow("point refused") << "2.5" << false << 0.0;
    QTest::newRow("two commas") << "1,2,3" << false << 0.0;
    QTest::newRow("trailing sign") << "3-" << false << 0.0;
    QTest::newRow("bare exponent") << "1E+" << false << 0.0;
    QTest::newRow("overflow") << "1e400" << false << 0.0;
    QTest::newRow("huge exponent digits") << "1e99999999999999999999" << false << 0.0;
}

void TestNumberFormat::parse() {
    QFETCH(QString, text);
    QFETCH(bool, ok);
    QFETCH(double, value);
    double got = 99;
    QCOMPARE(parseFrench(text, &got), ok);
    QCOMPARE(got, value);
}

QTEST_APPLESS_MAIN(TestNumberFormat)
#include "tst_numberformat.moc"
