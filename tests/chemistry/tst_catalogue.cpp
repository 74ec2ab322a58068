#include "chemistry/catalogue.h"
#include "platform/checkedint.h"

#include <QTest>

using namespace chemistry;

class TestCatalogue : public QObject {
    Q_OBJECT
private slots:
    void totals_data();
    void totals();
    void labels();
    void bondTexts_data();
    void bondTexts();
    void coefficients();
    void panelRowsMatchBonds();
    void badIndex();
};

void TestCatalogue::totals_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("broken");
    QTest::addColumn<int>("formed");
    QTest::addColumn<QString>("attojoules");
    QTest::addColumn<QString>("molar");
    QTest::newRow("methane") << 1 << 2628 << 3430 << "1,33"
                             << "802";
    QTest::newRow("ethane") << 2 << 9074 << 11880 << "4,66"
                            << "2 806";
    QTest::newRow("propane") << 3 << 6446 << 8450 << "3,33"
                             << "2 004";
    QTest::newRow("butane") << 4 << 16710 << 21920 << "8,65"
                            << "5 210";
    QTest::newRow("hydrogen/oxygen") << 5 << 1358 << 1840 << "0,8"
                                     << "482";
    QTest::newRow("hydrogen/chlorine") << 6 << 672 << 856 << "0,31"
                                       << "184";
    QTest::newRow("methanol") << 7 << 5574 << 6860 << "2,14"
                              << "1 286";
    QTest::newRow("ethanol") << 8 << 4696 << 5940 << "2,07"
                             << "1 244";
}

void TestCatalogue::totals() {
    QFETCH(int, index);
    QFETCH(int, broken);
    QFETCH(int, formed);
    QFETCH(QString, attojoules);
    QFETCH(QString, molar);
    const BondTotals t = computeTotals(index);
    QCOMPARE(t.broken, broken);
    QCOMPARE(t.formed, formed);
    // Re-selecting recomputes the same totals.
    QCOMPARE(computeTotals(index).broken, t.broken);
    QCOMPARE(heatAttojouleText(t.broken, t.formed), attojoules);
    QCOMPARE(heatMolarText(t.broken, t.formed), molar);
}

void TestCatalogue::labels() {
    QCOMPARE(reaction(1).label, QStringLiteral("Combustion complète du méthane dans le dioxygène"));
    QCOMPARE(reaction(2).label,
             QStringLiteral("Combustion complète de l'éthane dans le dioxygène"));
    QCOMPARE(reaction(6).label, QStringLiteral("Combustion du dihydrogène dans le dichlore"));
    QCOMPARE(reaction(8).label,
             QStringLiteral("Combustion complète de l'éthanol dans le dioxygène"));
    for (int i = 1; i <= ReactionCount; ++i)
        QCOMPARE(indexOfLabel(reaction(i).label), i);
    QCOMPARE(indexOfLabel(QStringLiteral("Combustion du méthane")), 0);
    QCOMPARE(indexOfLabel(reaction(1).label + QLatin1Char(' ')), 0); // exact comparison only
}

void TestCatalogue::bondTexts_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("label");
    QTest::addColumn<int>("kj");
    QTest::addColumn<QString>("perBond");
    QTest::newRow("C-H") << int(BondType::CH) << "C – H" << 410 << " = 0,681 · 10";
    QTest::newRow("C=O") << int(BondType::CdO) << "C = O (dans CO" << 795 << " = 1,32 · 10";
    QTest::newRow("Cl-Cl") << int(BondType::ClCl) << "Cl – Cl" << 240 << " = 0,399 · 10";
    // Kept as shipped although 428/602 rounds to 0,711.
    QTest::newRow("H-Cl") << int(BondType::HCl) << "H – Cl" << 428 << " = 0,712 · 10";
}

void TestCatalogue::bondTexts() {
    QFETCH(int, type);
    QFETCH(QString, label);
    QFETCH(int, kj);
    QFETCH(QString, perBond);
    const BondInfo& b = bondInfo(static_cast<BondType>(type));
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
    QCOMPARE(reaction(5).products.size(), std::size_t(1));
    QCOMPARE(reaction(6).products[0].formula, QStringLiteral("HCl"));
    QCOMPARE(reaction(7).fuel.formula, QStringLiteral("CH4O")); // raw formula, never CH3OH
}

void TestCatalogue::panelRowsMatchBonds() {
    // Every bond broken or formed appears exactly once in the data panel, and nothing else.
    for (int i = 1; i <= ReactionCount; ++i) {
        const Reaction& r = reaction(i);
        QSet<int> used;
        for (const auto& b : r.broken)
            used.insert(int(b.type));
        for (const auto& b : r.formed)
            used.insert(int(b.type));
        QSet<int> rows;
        for (BondType t : r.panelRows)
            rows.insert(int(t));
        QCOMPARE(rows, used);
        QCOMPARE(rows.size(), qsizetype(r.panelRows.size()));
    }
    QCOMPARE(reaction(8).panelRows.size(), std::size_t(6));
}

void TestCatalogue::badIndex() {
    QVERIFY_THROWS_EXCEPTION(std::out_of_range, reaction(0));
    QVERIFY_THROWS_EXCEPTION(std::out_of_range, reaction(9));
    QVERIFY(!isValidIndex(9));
    QVERIFY_THROWS_EXCEPTION(platform::OverflowError, heatMolarText(-30000, 30000));
}

QTEST_APPLESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
