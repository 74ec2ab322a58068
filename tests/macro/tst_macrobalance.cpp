#include "macro/balance.h"
#include "platform/checkedint.h"

#include <QTest>

using namespace macro;

class TestMacroBalance : public QObject {
    Q_OBJECT
private slots:
    void stoichiometryOfEachReaction_data();
    void stoichiometryOfEachReaction();
    void maxAdvancementTakesSmallerQuotient_data();
    void maxAdvancementTakesSmallerQuotient();
    void sliderEndsGiveExactAdvancement_data();
    void sliderEndsGiveExactAdvancement();
    void amountFieldValidation_data();
    void amountFieldValidation();
    void shownTexts_data();
    void shownTexts();
    void amountsAtFinalState_data();
    void amountsAtFinalState();
    void energyDifferenceIsChecked();
    void keyFilter_data();
    void keyFilter();
    void animationTicks_data();
    void animationTicks();
    void gaugeLevels_data();
    void gaugeLevels();
};

void TestMacroBalance::stoichiometryOfEachReaction_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("known");
    QTest::addColumn<QList<int>>("nu");
    QTest::newRow("methane") << 1 << true << QList<int>{1, 2, 1, 2};
    QTest::newRow("ethane") << 2 << true << QList<int>{2, 7, 4, 6};
    QTest::newRow("propane") << 3 << true << QList<int>{1, 5, 3, 4};
    QTest::newRow("butane") << 4 << true << QList<int>{2, 13, 8, 10};
    QTest::newRow("H2 in O2") << 5 << true << QList<int>{2, 1, 2, 0};
    QTest::newRow("H2 in Cl2") << 6 << true << QList<int>{1, 1, 2, 0};
    QTest::newRow("methanol") << 7 << true << QList<int>{2, 3, 2, 4};
    QTest::newRow("ethanol") << 8 << true << QList<int>{1, 3, 2, 3};
    QTest::newRow("tag not set") << 0 << false << QList<int>{};
    QTest::newRow("past the list") << 9 << false << QList<int>{};
}

void TestMacroBalance::stoichiometryOfEachReaction() {
    QFETCH(int, index);
    QFETCH(bool, known);
    QFETCH(QList<int>, nu);
    const auto s = stoichiometry(index);
    QCOMPARE(s.has_value(), known);
    if (!known)
        return;
    QCOMPARE((QList<int>{s->a, s->b, s->c, s->d}), nu);
    QCOMPARE(s->hasSecondProduct(), nu[3] != 0);
}

void TestMacroBalance::maxAdvancementTakesSmallerQuotient_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<float>("a");
    QTest::addColumn<float>("b");
    QTest::addColumn<double>("xmax");
    QTest::newRow("methane 1/1: oxygen limits") << 1 << 1.0F << 1.0F << 0.5;
    QTest::newRow("methane 1/2: tie") << 1 << 1.0F << 2.0F << 1.0;
    QTest::newRow("methane 3/2: oxygen") << 1 << 3.0F << 2.0F << 1.0;
    QTest::newRow("H2 in O2 2/1: tie") << 5 << 2.0F << 1.0F << 1.0;
    QTest::newRow("H2 in O2 1/1: hydrogen") << 5 << 1.0F << 1.0F << 0.5;
    QTest::newRow("ethane 1/7: fuel") << 2 << 1.0F << 7.0F << 0.5;
    QTest::newRow("butane max amounts") << 4 << 100000.0F << 100000.0F << 100000.0 / 13;
    QTest::newRow("no fuel") << 3 << 0.0F << 5.0F << 0.0;
    QTest::newRow("no oxidant") << 6 << 4.0F << 0.0F << 0.0;
}

void TestMacroBalance::maxAdvancementTakesSmallerQuotient() {
    QFETCH(int, index);
    QFETCH(float, a);
    QFETCH(float, b);
    QFETCH(double, xmax);
    QVERIFY(maxAdvancement(a, b, *stoichiometry(index)) == xmax);
}

void TestMacroBalance::sliderEndsGiveExactAdvancement_data() {
    QTest::addColumn<double>("xmax");
    QTest::newRow("0,5") << 0.5;
    QTest::newRow("a third") << 1.0 / 3;
    QTest::newRow("0,1 read as a single") << static_cast<double>(0.1F);
    QTest::newRow("butane") << 100000.0 / 13;
    QTest::newRow("0,7 / 7") << static_cast<double>(0.7F) / 7;
}

void TestMacroBalance::sliderEndsGiveExactAdvancement() {
    QFETCH(double, xmax);
    QVERIFY(advancementAt(xmax, 0, SliderMax) == 0.0);
    QVERIFY(advancementAt(xmax, 5000, SliderMax) == xmax / 2);
    QVERIFY(advancementAt(xmax, SliderMax, SliderMax) == xmax);
    QVERIFY(advancementAt(xmax, 2500, SliderMax) == xmax / 4);
}

void TestMacroBalance::amountFieldValidation_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("decimal") << "2,5"
                             << "  2,5";
    QTest::newRow("negative clamped") << "-3"
                                      << "  0,0";
    QTest::newRow("too large clamped") << "250000"
                                       << " 100 000,0";
    QTest::newRow("upper bound kept") << "100000"
                                      << " 100 000,0";
    QTest::newRow("just above bound") << "100000,1"
                                      << " 100 000,0";
    QTest::newRow("reads its own output back") << " 100 000,0"
                                               << " 100 000,0";
    QTest::newRow("zero") << "0"
                          << "  0,0";
    QTest::newRow("empty reads 0") << ""
                                   << "  0,0";
    QTest::newRow("lone minus reads 0") << "-"
                                        << "  0,0";
    QTest::newRow("lone comma reads 0") << ","
                                        << "  0,0";
    QTest::newRow("three decimals at most") << "1234,5678"
                                            << " 1 234,568";
    QTest::newRow("single precision 0,1") << "0,1"
                                          << "  0,1";
    QTest::newRow("grouped thousands") << "12345"
                                       << " 12 345,0";
}

void TestMacroBalance::amountFieldValidation() {
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    QCOMPARE(validatedAmountText(typed), shown);
    // What the field shows reads back as the same value.
    QCOMPARE(validatedAmountText(shown), shown);
}

void TestMacroBalance::shownTexts_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<QString>("untrimmed");
    QTest::addColumn<QString>("trimmed");
    QTest::newRow("half mole") << 0.5 << "mol"
                               << "  0,5"
                               << "0,5 mol";
    QTest::newRow("methane at 0,5") << -401.0 << "kJ"
                                    << "  -401,0"
                                    << "-401,0 kJ";
    QTest::newRow("negative zero") << -0.0 << "kJ"
                                   << "  0,0"
                                   << "0,0 kJ";
    QTest::newRow("tiny negative") << -0.0004 << "kJ"
                                   << "  0,0"
                                   << "0,0 kJ";
    QTest::newRow("rounds up") << 0.0005 << "mol"
                               << "  0,001"
                               << "0,001 mol";
    QTest::newRow("two decimals") << 0.75 << "mol"
                                  << "  0,75"
                                  << "0,75 mol";
    QTest::newRow("millions") << 1234567.0 << "kJ"
                              << "1 234 567,0"
                              << "1 234 567,0 kJ";
}

void TestMacroBalance::shownTexts() {
    QFETCH(double, value);
    QFETCH(QString, unit);
    QFETCH(QString, untrimmed);
    QFETCH(QString, trimmed);
    QCOMPARE(formatAmount(value), untrimmed);
    QCOMPARE(formatWithUnit(value, unit), trimmed);
}

void TestMacroBalance::amountsAtFinalState_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<float>("a");
    QTest::addColumn<float>("b");
    QTest::addColumn<QStringList>("amounts");
    QTest::newRow("methane 1/1") << 1 << 1.0F << 1.0F
                                 << QStringList{"  0,5", "  0,0", "  0,5", "  1,0"};
    QTest::newRow("methane 1/2") << 1 << 1.0F << 2.0F
                                 << QStringList{"  0,0", "  0,0", "  1,0", "  2,0"};
    QTest::newRow("H2 in O2 2/1") << 5 << 2.0F << 1.0F
                                  << QStringList{"  0,0", "  0,0", "  2,0", "  0,0"};
    // 0,7 as a single divided by 7 and multiplied back leaves a residue that must not show.
    QTest::newRow("ethane oxygen residue")
        << 2 << 1.0F << 0.7F << QStringList{"  0,8", "  0,0", "  0,4", "  0,6"};
    QTest::newRow("butane at the bounds")
        << 4 << 100000.0F << 100000.0F
        << QStringList{" 84 615,385", "  0,0", " 61 538,462", " 76 923,077"};
}

void TestMacroBalance::amountsAtFinalState() {
    QFETCH(int, index);
    QFETCH(float, a);
    QFETCH(float, b);
    QFETCH(QStringList, amounts);
    const Stoichiometry nu = *stoichiometry(index);
    const double x = advancementAt(maxAdvancement(a, b, nu), SliderMax, SliderMax);
    const Amounts n = amountsAt(a, b, nu, x);
    QStringList shown;
    for (double v : n.n)
        shown << formatAmount(v);
    QCOMPARE(shown, amounts);
}

void TestMacroBalance::energyDifferenceIsChecked() {
    QCOMPARE(exchangedEnergy(0.5, 2628, 3430), -401.0);
    QCOMPARE(exchangedEnergy(100000.0 / 13, 16710, 21920), -5210 * (100000.0 / 13));
    QCOMPARE(formatWithUnit(exchangedEnergy(100000.0 / 13, 16710, 21920), "kJ"),
             QStringLiteral("-40 076 923,077 kJ"));
    QVERIFY_THROWS_EXCEPTION(platform::OverflowError, exchangedEnergy(1.0, -30000, 10000));
    QVERIFY_THROWS_EXCEPTION(platform::OverflowError, exchangedEnergy(0.0, 30000, -10000));
}

void TestMacroBalance::keyFilter_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("typed");
    QTest::addColumn<bool>("validate");
    QTest::newRow("digit 0") << int('0') << int('0') << false;
    QTest::newRow("digit 9") << int('9') << int('9') << false;
    QTest::newRow("point becomes comma") << int('.') << int(',') << false;
    QTest::newRow("comma") << int(',') << int(',') << false;
    QTest::newRow("minus") << int('-') << int('-') << false;
    QTest::newRow("backspace") << 8 << 8 << false;
    QTest::newRow("enter validates") << 13 << 0 << true;
    QTest::newRow("letter") << int('a') << 0 << false;
    QTest::newRow("exponent letter") << int('E') << 0 << false;
    QTest::newRow("blank") << int(' ') << 0 << false;
    QTest::newRow("plus") << int('+') << 0 << false;
    QTest::newRow("escape") << 27 << 0 << false;
    QTest::newRow("ctrl+V") << 22 << 0 << false;
    QTest::newRow("accented letter") << 0xE9 << 0 << false;
}

void TestMacroBalance::keyFilter() {
    QFETCH(int, key);
    QFETCH(int, typed);
    QFETCH(bool, validate);
    const KeyFilterResult r = filterAmountKey(key);
    QCOMPARE(r.keyAscii, typed);
    QCOMPARE(r.validate, validate);
}

void TestMacroBalance::animationTicks_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("next");
    QTest::addColumn<bool>("finished");
    QTest::newRow("start") << 0 << 100 << false;
    QTest::newRow("paused off the grid") << 4321 << 4421 << false;
    QTest::newRow("last but one") << 9800 << 9900 << false;
    QTest::newRow("reaches the end") << 9900 << 10000 << true;
    QTest::newRow("overshoot stops at the end") << 9950 << 10000 << true;
    QTest::newRow("already at the end") << 10000 << 10000 << true;
}

void TestMacroBalance::animationTicks() {
    QFETCH(int, value);
    QFETCH(int, next);
    QFETCH(bool, finished);
    const AnimationTick t = animationTick(static_cast<std::int16_t>(value), SliderMax);
    QCOMPARE(int(t.value), next);
    QCOMPARE(t.finished, finished);
    QVERIFY_THROWS_EXCEPTION(platform::OverflowError, animationTick(32700, 32767));
}

void TestMacroBalance::gaugeLevels_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("v");
    QTest::addColumn<int>("t");
    QTest::addColumn<QList<double>>("levels");
    const int iso = int(GaugeMode::Isolated), open = int(GaugeMode::Open),
              cool = int(GaugeMode::Cooling);
    QTest::newRow("isolated start") << iso << 0 << 0 << QList<double>{105, 138, 135, 98};
    QTest::newRow("isolated end") << iso << 10000 << 0
                                  << QList<double>{105 - 10000.0 / 140, 138, 135, 98};
    QTest::newRow("isolated 7000") << iso << 7000 << 0 << QList<double>{55, 138, 135, 98};
    QTest::newRow("open start") << open << 0 << 0 << QList<double>{105, 138, 105, 98};
    QTest::newRow("open 4200") << open << 4200 << 0 << QList<double>{85, 152, 105, 84};
    QTest::newRow("open end") << open << 10000 << 0
                              << QList<double>{105 - 10000.0 / 210, 138 + 10000.0 / 300, 105,
                                               98 - 10000.0 / 300};
    QTest::newRow("cooling first tick")
        << cool << 10000 << 9900
        << QList<double>{105 - 9900.0 / 210, 138 + 10000.0 / 300 + 0.2, 105,
                         98 - 10000.0 / 300 - 0.2};
    QTest::newRow("cooling half way") << cool << 10000 << 5000
                                      << QList<double>{105 - 5000.0 / 210, 138 + 10000.0 / 300 + 10,
                                                       105, 98 - 10000.0 / 300 - 10};
    QTest::newRow("cooled down") << cool << 10000 << 0
                                 << QList<double>{105, 138 + 10000.0 / 300 + 20, 105,
                                                  98 - 10000.0 / 300 - 20};
}

void TestMacroBalance::gaugeLevels() {
    QFETCH(int, mode);
    QFETCH(int, v);
    QFETCH(int, t);
    QFETCH(QList<double>, levels);
    const GaugeLevels g = macro::gaugeLevels(GaugeMode(mode), v, t);
    const QList<double> got{g.systemThermometer, g.systemBar, g.surroundingsThermometer,
                            g.surroundingsBar};
    for (int i = 0; i < 4; ++i)
        QVERIFY2(qAbs(got[i] - levels[i]) < 1e-9,
                 qPrintable(QStringLiteral("gauge %1: %2").arg(i).arg(got[i], 0, 'g', 17)));
}

QTEST_GUILESS_MAIN(TestMacroBalance)
#include "tst_macrobalance.moc"
