#include "chemistry/catalogue.h"
#include "platform/checkedint.h"

#include <QTest>
#include <set>

using namespace chemistry;

class TestCatalogue : public QObject {
    Q_OBJECT
private slots:
    void reactions_data();
    void reactions();
    void bondTexts_data();
    void bondTexts();
    void coefficients();
    void lookupFailures();
};

void TestCatalogue::reactions_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("label");
    QTest::addColumn<int>("broken");
    QTest::addColumn<int>("formed");
    QTest::addColumn<QString>("attojoules");
    QTest::addColumn<QString>("molar");
    const auto row = [](int index, const char* label, int broken, int formed, const char* aj,
                        const char* molar) {
        QTest::addRow("%d", index) << index << QString::fromUtf8(label) << broken << formed
                                   << QString(aj) << QString(molar);
    };
    row(1, "Combustion complète du méthane dans le dioxygène", 2628, 3430, "1,33", "802");
    row(2, "Combustion complète de l'éthane dans le dioxygène", 9074, 11880, "4,66", "2 806");
    row(3, "Combustion complète du propane dans le dioxygène", 6446, 8450, "3,33", "2 004");
    row(4, "Combustion complète du butane dans le dioxygène", 16710, 21920, "8,65", "5 210");
    row(5, "Combustion du dihydrogène dans le dioxygène", 1358, 1840, "0,8", "482");
    row(6, "Combustion du dihydrogène dans le dichlore", 672, 856, "0,31", "184");
    row(7, "Combustion complète du méthanol dans le dioxygène", 5574, 6860, "2,14", "1 286");
    row(8, "Combustion complète de l'éthanol dans le dioxygène", 4696, 5940, "2,07", "1 244");
}

void TestCatalogue::reactions() {
    QFETCH(int, index);
    QFETCH(QString, label);
    QFETCH(int, broken);
    QFETCH(int, formed);
    QFETCH(QString, attojoules);
    QFETCH(QString, molar);
    const Reaction& r = reaction(index);
    QCOMPARE(r.label, label);
    QCOMPARE(indexOfLabel(label), index);
    const BondTotals t = computeTotals(index);
    QCOMPARE(t.broken, broken);
    QCOMPARE(t.formed, formed);
    QCOMPARE(heatAttojouleText(t.broken, t.formed), attojoules);
    QCOMPARE(heatMolarText(t.broken, t.formed), molar);

    // Every bond broken or formed has exactly one row in the data panel, and nothing else.
    std::set<BondType> used;
    for (const auto& b : r.broken)
        used.insert(b.type);
    for (const auto& b : r.formed)
        used.insert(b.type);
    QVERIFY(std::set<BondType>(r.panelRows.begin(), r.panelRows.end()) == used);
    QCOMPARE(r.panelRows.size(), used.size());
}

void TestCatalogue::bondTexts_data() {
    QTest::addColumn<BondType>("type");
    QTest::addColumn<QString>("label");
    QTest::addColumn<int>("kj");
    QTest::addColumn<QString>("perBond");
    QTest::newRow("C=O") << BondType::CdO << "C = O (dans CO" << 795 << " = 1,32 · 10";
    // Kept as shipped although 428/602 rounds to 0,711.
    QTest::newRow("H-Cl") << BondType::HCl << "H – Cl" << 428 << " = 0,712 · 10";
}

void TestCatalogue::bondTexts() {
    QFETCH(BondType, type);
    QFETCH(QString, label);
    QFETCH(int, kj);
    QFETCH(QString, perBond);
    const BondInfo& b = bondInfo(type);
    QCOMPARE(b.label, label);
    QCOMPARE(b.kjPerMol, kj);
    QCOMPARE(b.perBondText, perBond);
    QCOMPARE(b.molarText, QStringLiteral(" = %1 kJ · mol").arg(kj));
}

void TestCatalogue::coefficients() {
    const Reaction& butane = reaction(4);
    QCOMPARE(butane.fuel.formula, QStringLiteral("C4H10"));
    QCOMPARE(butane.fuel.coefficient, 2);
    QCOMPARE(butane.oxidant.coefficient, 13);
    QCOMPARE(butane.products.size(), std::size_t(2));
    QCOMPARE(butane.products[1].coefficient, 10);
    QCOMPARE(reaction(7).fuel.formula, QStringLiteral("CH4O")); // raw formula, never CH3OH
}

void TestCatalogue::lookupFailures() {
    QVERIFY_THROWS_EXCEPTION(std::out_of_range, reaction(0));
    QVERIFY_THROWS_EXCEPTION(std::out_of_range, reaction(9));
    QCOMPARE(indexOfLabel(reaction(1).label + QLatin1Char(' ')), 0); // exact comparison only
    QVERIFY_THROWS_EXCEPTION(platform::OverflowError, heatMolarText(-30000, 30000));
}

QTEST_APPLESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
