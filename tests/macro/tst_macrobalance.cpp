#include "macro/balance.h"
#include "platform/checkedint.h"

#include <QTest>

using namespace macro;

class TestMacroBalance : public QObject {
    Q_OBJECT
private slots:
    void validation_data();
    void validation();
    void sliderIsExactAtHalfAndEnd();
    void tiesAndResidues();
};

void TestMacroBalance::validation_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    // Typed through the panel: "2,5", "-3" and "250000"; the bounds and rounding here.
    const char* rows[][2] = {
        {"100000,1", " 100 000,0"}, {"", "  0,0"},    {"-", "  0,0"},
        {"0,1", "  0,1"},           {"12", "  12,0"}, {"1234,5678", " 1 234,568"},
    };
    for (const auto& r : rows)
        QTest::newRow(r[0]) << QString::fromUtf8(r[0]) << QString::fromUtf8(r[1]);
}

void TestMacroBalance::validation() {
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    QCOMPARE(validatedAmountText(typed), shown);
    QCOMPARE(validatedAmountText(shown), shown); // what a field shows reads back the same
}

void TestMacroBalance::sliderIsExactAtHalfAndEnd() {
    for (double xmax : {0.5, 1.0 / 3, double(0.1F), 100000.0 / 13, double(0.7F) / 7}) {
        QVERIFY(advancementAt(xmax, 5000, SliderMax) == xmax / 2);
        QVERIFY(advancementAt(xmax, SliderMax, SliderMax) == xmax);
        QVERIFY(advancementAt(xmax, 0, SliderMax) == 0.0);
    }
}

void TestMacroBalance::tiesAndResidues() {
    // Equal quotients: x_max is the first reactant's and both reactants run out.
    const Stoichiometry h2 = *stoichiometry(5);
    QVERIFY(maxAdvancement(2.0F, 1.0F, h2) == 1.0);
    const Amounts n = amountsAt(2.0F, 1.0F, h2, 1.0);
    QCOMPARE(formatAmount(n.n[0]) + formatAmount(n.n[1]), QStringLiteral("  0,0  0,0"));
    // 0,7 mol of O2 for 2 C2H6 + 7 O2: the residue of 0,7/7×7 must not show as -0,0.
    const Stoichiometry ethane = *stoichiometry(2);
    const double x = maxAdvancement(1.0F, 0.7F, ethane);
    QCOMPARE(formatAmount(amountsAt(1.0F, 0.7F, ethane, x).n[1]), QStringLiteral("  0,0"));
    // Nothing shows as a negative zero; half a thousandth rounds up.
    QCOMPARE(formatWithUnit(-0.0004, QStringLiteral("kJ")), QStringLiteral("0,0 kJ"));
    QCOMPARE(formatAmount(0.0005), QStringLiteral("  0,001"));
    QCOMPARE(formatAmount(-401.0), QStringLiteral("  -401,0"));
    QVERIFY(!stoichiometry(0) && !stoichiometry(9));
    QCOMPARE(stoichiometry(6)->hasSecondProduct(), false);
    QVERIFY_THROWS_EXCEPTION(platform::OverflowError, exchangedEnergy(0.0, 30000, -10000));
    QVERIFY_THROWS_EXCEPTION(platform::OverflowError, animationTick(32700, 32767));
}

QTEST_GUILESS_MAIN(TestMacroBalance)
#include "tst_macrobalance.moc"
