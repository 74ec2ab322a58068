#include "platform/numberformat.h"

#include <QTest>
#include <cmath>
#include <limits>

using platform::formatNumber;
using platform::formatTrimmed;
using platform::parseFrench;

class TestNumberFormat : public QObject {
    Q_OBJECT
private slots:
    void format_data();
    void format();
    void trimmed_data();
    void trimmed();
    void nonFinite();
    void parse_data();
    void parse();
};

namespace {
const QString Amount = QStringLiteral("### ### ##0.0##");
const QString Diagram = QStringLiteral("### ##0.0");
const QString Heat = QStringLiteral("### ### ### ##0.0#");
const QString HeatKj = QStringLiteral("### ### ### ##0");
const QString Cursor = QStringLiteral("#############0.00");
const QString Sci = QStringLiteral("#.#######E+00");
const QString Table = QStringLiteral("### ### ##0.0## ##");
} // namespace

void TestNumberFormat::format_data() {
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("expected");

    // Amounts and energies
    QTest::newRow("amount 0.5") << Amount << 0.5 << "  0,5";
    QTest::newRow("amount 1234.5") << Amount << 1234.5 << " 1 234,5";
    QTest::newRow("amount 1234567") << Amount << 1234567.0 << "1 234 567,0";
    QTest::newRow("amount 0") << Amount << 0.0 << "  0,0";
    QTest::newRow("amount -0") << Amount << -0.0 << "  0,0";
    QTest::newRow("amount 100000") << Amount << 100000.0 << " 100 000,0";
    QTest::newRow("amount -401") << Amount << -401.0 << "  -401,0";
    QTest::newRow("amount -0.5") << Amount << -0.5 << "  -0,5";
    QTest::newRow("amount -1234.5") << Amount << -1234.5 << " -1 234,5";
    QTest::newRow("amount -1234567") << Amount << -1234567.0 << "-1 234 567,0";
    QTest::newRow("amount -80200") << Amount << -80200.0 << " -80 200,0";
    QTest::newRow("amount 1/3") << Amount << 1.0 / 3 << "  0,333";
    QTest::newRow("amount 0.05") << Amount << 0.05 << "  0,05";
    QTest::newRow("amount 9.9996 carries") << Amount << 9.9996 << "  10,0";
    QTest::newRow("amount 9.9994 stays") << Amount << 9.9994 << "  9,999";
    QTest::newRow("amount 999.9996 new group") << Amount << 999.9996 << " 1 000,0";
    QTest::newRow("amount 0.0005 half up") << Amount << 0.0005 << "  0,001";
    QTest::newRow("amount 0.0004") << Amount << 0.0004 << "  0,0";
    QTest::newRow("amount 1.0005 decimal half up") << Amount << 1.0005 << "  1,001";
    QTest::newRow("amount -0.00001 no sign") << Amount << -0.00001 << "  0,0";
    QTest::newRow("amount -0.0005") << Amount << -0.0005 << "  -0,001";
    QTest::newRow("amount 1e-300") << Amount << 1e-300 << "  0,0";
    QTest::newRow("amount 1e20") << Amount << 1e20 << "100000000000000 000 000,0";
    QTest::newRow("amount 15 significant")
        << Amount << 1.23456789012345678e20 << "123456789012346 000 000,0";
    QTest::newRow("amount surplus digits") << Amount << 12345678901.23456 << "12345 678 901,235";

    // Energy diagram
    QTest::newRow("diagram 1234.5") << Diagram << 1234.5 << "1 234,5";
    QTest::newRow("diagram 1234567") << Diagram << 1234567.0 << "1234 567,0";
    QTest::newRow("diagram 2628/602") << Diagram << 2628.0 / 602 << " 4,4";
    QTest::newRow("diagram -802/602") << Diagram << -802.0 / 602 << " -1,3";
    QTest::newRow("diagram 99999.96") << Diagram << 99999.96 << "100 000,0";
    QTest::newRow("diagram 999999.96") << Diagram << 999999.96 << "1000 000,0";
    QTest::newRow("diagram 0.05") << Diagram << 0.05 << " 0,1";

    // Heat of reaction
    QTest::newRow("heat 1234.5") << Heat << 1234.5 << "  1 234,5";
    QTest::newRow("heat 802/602") << Heat << 802.0 / 602 << "   1,33";
    QTest::newRow("heat 482/602") << Heat << 482.0 / 602 << "   0,8";
    QTest::newRow("heat kJ 5210") << HeatKj << 5210.0 << "  5 210";
    QTest::newRow("heat kJ 802") << HeatKj << 802.0 << "   802";
    QTest::newRow("heat kJ 0") << HeatKj << 0.0 << "   0";
    QTest::newRow("heat kJ 2.5 half up") << HeatKj << 2.5 << "   3";

    // Graph cursor
    QTest::newRow("cursor 0.25") << Cursor << 0.25 << "0,25";
    QTest::newRow("cursor 1234.567") << Cursor << 1234.567 << "1234,57";
    QTest::newRow("cursor -3.14159") << Cursor << -3.14159 << "-3,14";
    QTest::newRow("cursor 2.675 decimal") << Cursor << 2.675 << "2,68";
    QTest::newRow("cursor 0.125 half up") << Cursor << 0.125 << "0,13";
    QTest::newRow("cursor 0.0049") << Cursor << 0.0049 << "0,00";

    // Calculator, scientific
    QTest::newRow("sci 1234.5") << Sci << 1234.5 << "1,2345E+03";
    QTest::newRow("sci 0.000123") << Sci << 0.000123 << "1,23E-04";
    QTest::newRow("sci -1234.5") << Sci << -1234.5 << "-1,2345E+03";
    QTest::newRow("sci 0.5") << Sci << 0.5 << "5,E-01";
    QTest::newRow("sci 1000") << Sci << 1000.0 << "1,E+03";
    QTest::newRow("sci 0") << Sci << 0.0 << ",E+00";
    QTest::newRow("sci 123456789 rounds") << Sci << 123456789.0 << "1,2345679E+08";
    QTest::newRow("sci 9.99999999 carries") << Sci << 9.99999999 << "1,E+01";
    QTest::newRow("sci 1e100") << Sci << 1e100 << "1,E+100";
    QTest::newRow("sci 1.5e-300") << Sci << 1.5e-300 << "1,5E-300";
    QTest::newRow("sci 1/3") << Sci << 1.0 / 3 << "3,3333333E-01";
    QTest::newRow("sci E- hides plus") << "0.0E-00" << 1234.5 << "1,2E03";
    QTest::newRow("sci E- shows minus") << "0.0E-00" << 0.012 << "1,2E-02";
    QTest::newRow("sci two integer digits") << "00.00E+00" << 1234.5 << "12,35E+02";

    // Value table
    QTest::newRow("table 1234.5") << Table << 1234.5 << " 1 234,5 ";
    QTest::newRow("table 0.123456") << Table << 0.123456 << "  0,123 46";
    QTest::newRow("table 0.05") << Table << 0.05 << "  0,05 ";
    QTest::newRow("table 0.015") << Table << 0.015 << "  0,015 ";
    QTest::newRow("table 40.1") << Table << 40.1 << "  40,1 ";

    // Pattern reading
    QTest::newRow("hash point 0.5") << "#.##" << 0.5 << ",5";
    QTest::newRow("hash point 5") << "#.##" << 5.0 << "5,";
    QTest::newRow("hash point -0.5") << "#.##" << -0.5 << "-,5";
    QTest::newRow("zeros pad") << "000" << 5.0 << "005";
    QTest::newRow("no integer placeholder") << ".00" << 12.5 << "12,50";
    QTest::newRow("integer only -2.5") << "0" << -2.5 << "-3";
    QTest::newRow("quoted literal") << "0.0\" kJ\"" << 5.0 << "5,0 kJ";
    QTest::newRow("escaped zero") << "0\\0" << 7.0 << "70";
    QTest::newRow("second point literal") << "0.0.0" << 1.25 << "1,2.5";
}

void TestNumberFormat::format() {
    QFETCH(QString, pattern);
    QFETCH(double, value);
    QFETCH(QString, expected);
    QCOMPARE(formatNumber(value, pattern), expected);
}

void TestNumberFormat::trimmed_data() {
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("expected");

    // Heat of reaction of the eight reactions, per run of the equation and per mole.
    const int heats[8] = {802, 2806, 2004, 5210, 482, 184, 1286, 1244};
    const char* perRun[8] = {"1,33", "4,66", "3,33", "8,65", "0,8", "0,31", "2,14", "2,07"};
    const char* perMole[8] = {"802", "2 806", "2 004", "5 210", "482", "184", "1 286", "1 244"};
    for (int i = 0; i < 8; ++i) {
        QTest::addRow("reaction %d per run", i + 1) << Heat << heats[i] / 602.0 << perRun[i];
        QTest::addRow("reaction %d per mole", i + 1) << HeatKj << double(heats[i]) << perMole[i];
    }
    QTest::newRow("energy -401") << Amount << -401.0 << "-401,0";
    QTest::newRow("energy -0") << Amount << 0.5 * -0.0 << "0,0";
    QTest::newRow("advancement 0.5") << Amount << 0.5 << "0,5";
    QTest::newRow("table keeps nothing") << Table << 1234.5 << "1 234,5";
}

void TestNumberFormat::trimmed() {
    QFETCH(QString, pattern);
    QFETCH(double, value);
    QFETCH(QString, expected);
    QCOMPARE(formatTrimmed(value, pattern), expected);
}

void TestNumberFormat::nonFinite() {
    QCOMPARE(formatNumber(std::numeric_limits<double>::infinity(), Amount), QString());
    QCOMPARE(formatNumber(-std::numeric_limits<double>::infinity(), Sci), QString());
    QCOMPARE(formatNumber(std::numeric_limits<double>::quiet_NaN(), Cursor), QString());
}

void TestNumberFormat::parse_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<double>("value");

    QTest::newRow("grouped") << "100 000,0" << true << 100000.0;
    QTest::newRow("formatted amount") << "  0,5" << true << 0.5;
    QTest::newRow("formatted energy") << "  -401,0" << true << -401.0;
    QTest::newRow("millions") << "1 234 567,0" << true << 1234567.0;
    QTest::newRow("no-break spaces") << QString::fromUtf8("100\u00A0000,5") << true << 100000.5;
    QTest::newRow("narrow no-break") << QString::fromUtf8("\u202F1\u202F000") << true << 1000.0;
    QTest::newRow("tab and newline") << "\t7\n" << true << 7.0;
    QTest::newRow("plus") << "+3" << true << 3.0;
    QTest::newRow("sign then blank") << "- 3" << true << -3.0;
    QTest::newRow("comma first") << ",5" << true << 0.5;
    QTest::newRow("comma last") << "5," << true << 5.0;
    QTest::newRow("zero") << "0,0" << true << 0.0;
    QTest::newRow("minus zero") << "-0" << true << 0.0;
    QTest::newRow("exponent") << "1,5E3" << true << 1500.0;
    QTest::newRow("small exponent") << "1e-2" << true << 0.01;
    QTest::newRow("underflow") << "1e-400" << true << 0.0;
    QTest::newRow("empty") << "" << false << 0.0;
    QTest::newRow("blanks only") << "   " << false << 0.0;
    QTest::newRow("letters") << "abc" << false << 0.0;
    QTest::newRow("trailing letters") << "12abc" << false << 0.0;
    QTest::newRow("point refused") << "2.5" << false << 0.0;
    QTest::newRow("two commas") << "1,2,3" << false << 0.0;
    QTest::newRow("sign alone") << "-" << false << 0.0;
    QTest::newRow("comma alone") << "," << false << 0.0;
    QTest::newRow("trailing sign") << "3-" << false << 0.0;
    QTest::newRow("double sign") << "--1" << false << 0.0;
    QTest::newRow("bare exponent") << "1E" << false << 0.0;
    QTest::newRow("exponent sign only") << "1E+" << false << 0.0;
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
