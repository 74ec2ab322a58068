#include "chemistry/catalogue.h"
#include "macro/balance.h"
#include "macro/graph.h"

#include <QTest>

using namespace macro;

namespace {

// The balance as the Macro tab leaves it for a reaction and two entered amounts.
GraphInput balance(int reaction, float a, float b, bool open) {
    const Stoichiometry nu = *stoichiometry(reaction);
    const chemistry::BondTotals t = chemistry::computeTotals(reaction);
    return {maxAdvancement(a, b, nu), t.broken, t.formed, open};
}

QString axisText(const AxisScale& a) {
    return QStringLiteral("%1 %2 %3").arg(a.m).arg(a.e).arg(a.d);
}

} // namespace

class TestMacroGraph : public QObject {
    Q_OBJECT
private slots:
    void scaleSearch_data();
    void scaleSearch();
    void graphs_data();
    void graphs();
    void lastStepPastTheRows();
    void curveAndPoints();
    void cursor();
    void tableText();
};

void TestMacroGraph::scaleSearch_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("med"); // m, e and d after the rounding of m
    QTest::addColumn<double>("span");
    QTest::newRow("0,5") << 0.5 << "5 -1 1" << 0.5;
    QTest::newRow("1") << 1.0 << "10 -1 2" << 1.0;
    QTest::newRow("3,2") << 3.2 << "4 0 1" << 4.0;
    QTest::newRow("0,25") << 0.25 << "25 -2 5" << 0.25;
    QTest::newRow("13 raised to 14") << 13.0 << "14 0 2" << 14.0;
    QTest::newRow("27 raised to 30") << 27.0 << "30 0 5" << 30.0;
    QTest::newRow("29,5 moves to 3E1") << 29.5 << "3 1 1" << 30.0;
    // 10 × 10^-6 computed in binary falls just below 0,00001.
    QTest::newRow("empty energy axis") << EmptyEnergySpan << "10 -6 2" << 0.00001;
    // An amount of 0,3 held in single precision is a little above 0,3.
    QTest::newRow("single 0,3") << double(0.3F) << "3 -1 1" << 0.3;
    QTest::newRow("just above 0,3") << 0.3000004 << "4 -1 1" << 0.4;
    QTest::newRow("smallest") << 1e-9 << "3 -7 1" << 3e-7;
    QTest::newRow("largest") << 2.9e11 << "30 10 5" << 3e11;
    QTest::newRow("beyond the range") << 1e12 << "30 10 5" << 3e11;
}

void TestMacroGraph::scaleSearch() {
    QFETCH(double, value);
    QFETCH(QString, med);
    QFETCH(double, span);
    const AxisScale a = axisScale(value);
    QCOMPARE(axisText(a), med);
    QVERIFY(a.span() == span); // the double nearest to the decimal span, exactly
}

void TestMacroGraph::graphs_data() {
    QTest::addColumn<GraphInput>("input");
    QTest::addColumn<QString>("xAxis");
    QTest::addColumn<QString>("energyAxis");
    QTest::addColumn<int>("rows");
    // Cells of the first, middle (rows / 2) and last rows, x then |ΔE|.
    QTest::addColumn<QStringList>("cells");
    QTest::addColumn<QString>("energyLegend");
    QTest::addColumn<QString>("xLegend");

    QTest::newRow("methane 1/2 open")
        << balance(1, 1, 2, true) << "10 -1 2"
        << "9 2 1" << 21
        << QStringList{"  0,0   ", "  0,0   ", "  0,5   ", "  401,0   ", "  1,0   ", "  802,0   "}
        << "Une division correspond à 100 kJ"
        << "0,2 mol";
    QTest::newRow("methane 1/2 isolated")
        << balance(1, 1, 2, false) << "10 -1 2"
        << "10 -6 2" << 21
        << QStringList{"  0,0   ", "  0,0   ", "  0,5   ", "  0,0   ", "  1,0   ", "  0,0   "}
        << "Une division correspond à 0,000002 kJ"
        << "0,2 mol";
    QTest::newRow("methane 0,3/1 open")
        << balance(1, 0.3F, 1, true) << "3 -1 1"
        << "25 1 5" << 21
        << QStringList{"  0,0   ", "  0,0   ", "  0,15   ", "  120,3   ", "  0,3   ", "  240,6   "}
        << "Une division correspond à 50 kJ"
        << "0,1 mol";
    QTest::newRow("butane 100000/100000 open")
        << balance(4, 100000, 100000, true) << "8 3 1"
        << "5 7 1" << 20 << QStringList{"  0,0   ",        "  0,0   ",    " 4 000,0   ",
                                        "20 840 000,0   ", " 7 600,0   ", "39 596 000,0   "}
        << "Une division correspond à 10 000 000 kJ"
        << "1 000 mol";
    QTest::newRow("ethanol 2,5/3 open")
        << balance(8, 2.5F, 3, true) << "10 -1 2"
        << "14 2 2" << 21
        << QStringList{"  0,0   ", "  0,0   ", "  0,5   ", "  622,0   ", "  1,0   ", " 1 244,0   "}
        << "Une division correspond à 200 kJ"
        << "0,2 mol";
    QTest::newRow("smallest amount")
        << balance(4, 0.001F, 1, true) << "5 -4 1"
        << "30 -1 5" << 21 << QStringList{"  0,0   ",    "  0,0   ",    "  0,000 25  ",
                                          "  1,302 5  ", "  0,000 5  ", "  2,605   "}
        << "Une division correspond à 0,5 kJ"
        << "0,0001 mol";
    // Quotients that binary arithmetic puts just under 20: 0,7 / 0,035 and 1,4 / 0,07.
    QTest::newRow("X 0,7 exactly")
        << GraphInput{0.7, 2628, 3430, true} << "7 -1 1"
        << "6 2 1" << 21
        << QStringList{"  0,0   ", "  0,0   ", "  0,35   ", "  280,7   ", "  0,7   ", "  561,4   "}
        << "Une division correspond à 100 kJ"
        << "0,1 mol";
    QTest::newRow("X 1,4 exactly")
        << GraphInput{1.4, 2628, 3430, true} << "14 -1 2"
        << "12 2 2" << 21
        << QStringList{"  0,0   ", "  0,0   ", "  0,7   ", "  561,4   ", "  1,4   ", " 1 122,8   "}
        << "Une division correspond à 200 kJ"
        << "0,2 mol";
    // A difference past 16 bits: the energy stays at nothing.
    QTest::newRow("overflowing totals")
        << GraphInput{1.0, -30000, 10000, true} << "10 -1 2"
        << "10 -6 2" << 21
        << QStringList{"  0,0   ", "  0,0   ", "  0,5   ", "  0,0   ", "  1,0   ", "  0,0   "}
        << "Une division correspond à 0,000002 kJ"
        << "0,2 mol";
}

void TestMacroGraph::graphs() {
    QFETCH(GraphInput, input);
    QFETCH(QString, xAxis);
    QFETCH(QString, energyAxis);
    QFETCH(int, rows);
    QFETCH(QStringList, cells);
    QFETCH(QString, energyLegend);
    QFETCH(QString, xLegend);

    const EnergyGraph g(input);
    QCOMPARE(axisText(g.xAxis()), xAxis);
    QCOMPARE(axisText(g.energyAxis()), energyAxis);
    QCOMPARE(g.rowCount(), rows);
    QCOMPARE(static_cast<int>(g.values().size()), rows);
    const auto cell = [&](int row, int col) {
        const TableValue& v = g.values()[static_cast<std::size_t>(row)];
        return col == 0 ? v.xText : v.energyText;
    };
    QCOMPARE((QStringList{cell(0, 0), cell(0, 1), cell(rows / 2, 0), cell(rows / 2, 1),
                          cell(rows - 1, 0), cell(rows - 1, 1)}),
             cells);
    QCOMPARE(g.energyLegend(), energyLegend);
    QCOMPARE(g.xLegend(), (QStringList{"Une division", "correspond à", xLegend}));
}

void TestMacroGraph::lastStepPastTheRows() {
    // X = 0,298: 19,87 steps. The grid has Int + 1 = 20 rows up to 0,285; the loop still
    // reaches X, which gets its cross and its place in the point table but no row.
    const EnergyGraph g(balance(1, 0.298F, 1, true));
    QCOMPARE(g.step(), 0.015);
    QCOMPARE(g.rowCount(), 20);
    QCOMPARE(static_cast<int>(g.values().size()), 21);
    QVERIFY(g.values().back().x == g.maxAdvancement());
    QCOMPARE(g.values()[19].xText, QStringLiteral("  0,285   "));
    const PlotPoint last = g.points().back();
    QCOMPARE(g.rowNear(last.x, last.y), -1);
    QCOMPARE(g.tableText(u';').count(QStringLiteral("\r\n")), 21); // headings and 20 rows
}

void TestMacroGraph::curveAndPoints() {
    const EnergyGraph g(balance(1, 1, 2, true));
    const std::vector<QPointF> curve = g.curve();
    QCOMPARE(static_cast<int>(curve.size()), CurvePoints);
    QCOMPARE(curve.front(), QPointF(20, 380));
    // x = 1 of a 1-mol axis, 802 kJ of a 900-kJ axis.
    QCOMPARE(curve.back(), QPointF(380, 380 - 802 * 360.0 / 900));
    // Tabulated points every 18 pixels along x, rounded to whole pixels.
    QCOMPARE(g.values()[10].pixel, QPointF(200, 380 - 401 * 360.0 / 900));
    QCOMPARE(g.points()[10].y, 220); // 219,6
    QCOMPARE(g.points()[20].x, 380);

    // An isolated system: a flat curve on the x axis.
    const EnergyGraph flat(balance(1, 1, 2, false));
    QCOMPARE(flat.curve().back(), QPointF(380, 380));
    QCOMPARE(flat.points()[7].y, 380);
    QCOMPARE(flat.maxEnergy(), EmptyEnergySpan);
}

void TestMacroGraph::cursor() {
    // The plot square's border lines belong to the outside.
    QVERIFY(!EnergyGraph::insidePlot(19, 381));
    QVERIFY(!EnergyGraph::insidePlot(19, 200));
    QVERIFY(!EnergyGraph::insidePlot(381, 200));
    QVERIFY(!EnergyGraph::insidePlot(200, 19));
    QVERIFY(!EnergyGraph::insidePlot(200, 381));
    QVERIFY(EnergyGraph::insidePlot(20, 20));
    QVERIFY(EnergyGraph::insidePlot(380, 380));

    const EnergyGraph g(balance(1, 1, 2, true));
    QCOMPARE(g.cursorEnergy(21), QStringLiteral("897,50"));
    // Within 3 pixels of the point (200, 220) along both axes.
    QCOMPARE(g.rowNear(203, 217), 10);
    QCOMPARE(g.rowNear(197, 223), 10);
    QCOMPARE(g.rowNear(204, 220), -1);
    QCOMPARE(g.rowNear(200, 224), -1);
    QCOMPARE(g.rowNear(21, 379), 0);

    const EnergyGraph big(balance(4, 100000, 100000, true));
    QCOMPARE(big.cursorEnergy(20), QStringLiteral("50000000,00"));
}

void TestMacroGraph::tableText() {
    // Group blanks would make a spreadsheet read text instead of numbers.
    const EnergyGraph big(balance(4, 100000, 100000, true));
    const QStringList lines = big.tableText(u';').split(QStringLiteral("\r\n"));
    QCOMPARE(lines.size(), 22); // headings, 20 rows, and nothing after the last CR LF
    QCOMPARE(lines[0], QStringLiteral("x (mol);|\u0394E| (kJ)"));
    QCOMPARE(lines[20], QStringLiteral("7600,0;39596000,0"));
    QCOMPARE(lines[21], QString());
}

QTEST_GUILESS_MAIN(TestMacroGraph)
#include "tst_macrograph.moc"
