#include "micro/bonds.h"
#include "micro/geometry.h"

#include <QTest>
#include <map>
#include <set>

using chemistry::BondType;
using micro::BondLine;
using micro::BondStroke;

namespace {

// One letter per bond type, to write bond sequences compactly.
QChar letter(BondType t) {
    switch (t) {
    case BondType::CH:
        return QLatin1Char('H');
    case BondType::CC:
        return QLatin1Char('C');
    case BondType::OO:
        return QLatin1Char('O');
    case BondType::CO:
        return QLatin1Char('o');
    case BondType::OH:
        return QLatin1Char('h');
    case BondType::CdO:
        return QLatin1Char('d');
    case BondType::HH:
        return QLatin1Char('y');
    case BondType::ClCl:
        return QLatin1Char('l');
    case BondType::HCl:
        return QLatin1Char('x');
    }
    return QLatin1Char('?');
}

QString sequence(std::span<const BondLine> bonds) {
    QString s;
    for (const BondLine& b : bonds)
        s += letter(b.type);
    return s;
}

// The two elements a bond type joins, smaller code first.
std::pair<int, int> elementsOf(BondType t) {
    using namespace micro;
    switch (t) {
    case BondType::CH:
        return {Carbon, Hydrogen};
    case BondType::CC:
        return {Carbon, Carbon};
    case BondType::OO:
        return {Oxygen, Oxygen};
    case BondType::CO:
    case BondType::CdO:
        return {Carbon, Oxygen};
    case BondType::OH:
        return {Hydrogen, Oxygen};
    case BondType::HH:
        return {Hydrogen, Hydrogen};
    case BondType::ClCl:
        return {Chlorine, Chlorine};
    case BondType::HCl:
        return {Hydrogen, Chlorine};
    }
    return {0, 0};
}

int valence(int element) {
    switch (element) {
    case micro::Carbon:
        return 4;
    case micro::Oxygen:
        return 2;
    default:
        return 1;
    }
}

BondStroke box(int x1, int y1, int x2, int y2) {
    return {true, static_cast<std::int16_t>(x1), static_cast<std::int16_t>(y1),
            static_cast<std::int16_t>(x2), static_cast<std::int16_t>(y2)};
}
BondStroke plain(int x1, int y1, int x2, int y2) {
    return {false, static_cast<std::int16_t>(x1), static_cast<std::int16_t>(y1),
            static_cast<std::int16_t>(x2), static_cast<std::int16_t>(y2)};
}

} // namespace

Q_DECLARE_METATYPE(BondStroke)
Q_DECLARE_METATYPE(QList<BondStroke>)

class TestMicroGeometry : public QObject {
    Q_OBJECT
private slots:
    void atomCensus_data();
    void atomCensus();
    void atomSamples_data();
    void atomSamples();
    void referencesmicroFillsButaneSlots();
    void otherIndicesLeaveArrays();
    void constants_data();
    void constants();
    void bondOrders_data();
    void bondOrders();
    void bondEnergies_data();
    void bondEnergies();
    void bondEndsOnAtomCentres_data();
    void bondEndsOnAtomCentres();
    void methaneStrokes_data();
    void methaneStrokes();
    void alcoholSlantedCut();
};

void TestMicroGeometry::atomCensus_data() {
    QTest::addColumn<int>("reaction");
    QTest::addColumn<int>("carbon");
    QTest::addColumn<int>("hydrogen");
    QTest::addColumn<int>("oxygen");
    QTest::addColumn<int>("chlorine");
    // Atoms of the equation as written, e.g. 2 C4H10 + 13 O2.
    QTest::newRow("methane") << 1 << 1 << 4 << 4 << 0;
    QTest::newRow("ethane") << 2 << 4 << 12 << 14 << 0;
    QTest::newRow("propane") << 3 << 3 << 8 << 10 << 0;
    QTest::newRow("butane") << 4 << 8 << 20 << 26 << 0;
    QTest::newRow("hydrogen") << 5 << 0 << 4 << 2 << 0;
    QTest::newRow("hydrogen chloride") << 6 << 0 << 2 << 0 << 2;
    QTest::newRow("methanol") << 7 << 2 << 8 << 8 << 0;
    QTest::newRow("ethanol") << 8 << 2 << 6 << 7 << 0;
}

void TestMicroGeometry::atomCensus() {
    QFETCH(int, reaction);
    std::map<int, int> census;
    const auto layout = micro::atomLayout(reaction);
    for (const micro::AtomPlacement& a : layout)
        ++census[a.kind];
    QFETCH(int, carbon);
    QFETCH(int, hydrogen);
    QFETCH(int, oxygen);
    QFETCH(int, chlorine);
    QCOMPARE(census[micro::Carbon], carbon);
    QCOMPARE(census[micro::Hydrogen], hydrogen);
    QCOMPARE(census[micro::Oxygen], oxygen);
    QCOMPARE(census[micro::Chlorine], chlorine);
    QCOMPARE(static_cast<int>(layout.size()), micro::animationConstants(reaction)->atomCount);
}

void TestMicroGeometry::atomSamples_data() {
    QTest::addColumn<int>("reaction");
    QTest::addColumn<int>("atom");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QPoint>("start");
    QTest::addColumn<QPoint>("end");
    QTest::newRow("methane carbon stays") << 1 << 2 << 1 << QPoint(155, 110) << QPoint(155, 110);
    QTest::newRow("methane last oxygen") << 1 << 9 << 3 << QPoint(210, 240) << QPoint(210, 225);
    QTest::newRow("HCl 1") << 6 << 1 << 2 << QPoint(145, 110) << QPoint(100, 160);
    QTest::newRow("HCl 2") << 6 << 2 << 2 << QPoint(175, 110) << QPoint(190, 160);
    QTest::newRow("HCl 3") << 6 << 3 << 4 << QPoint(145, 210) << QPoint(130, 160);
    QTest::newRow("HCl 4") << 6 << 4 << 4 << QPoint(175, 210) << QPoint(220, 160);
    QTest::newRow("butane first") << 4 << 1 << 2 << QPoint(85, 60) << QPoint(30, 190);
    QTest::newRow("butane 28") << 4 << 28 << 2 << QPoint(235, 160) << QPoint(270, 320);
    QTest::newRow("butane 29") << 4 << 29 << 3 << QPoint(25, 200) << QPoint(70, 30);
    QTest::newRow("butane 54") << 4 << 54 << 3 << QPoint(295, 320) << QPoint(285, 295);
    QTest::newRow("methanol OH") << 7 << 6 << 2 << QPoint(190, 35) << QPoint(120, 240);
    QTest::newRow("ethanol OH") << 8 << 9 << 2 << QPoint(210, 85) << QPoint(230, 220);
    QTest::newRow("propane 21") << 3 << 21 << 3 << QPoint(210, 270) << QPoint(255, 235);
    QTest::newRow("ethane 30") << 2 << 30 << 3 << QPoint(215, 280) << QPoint(225, 285);
    QTest::newRow("water 6") << 5 << 6 << 3 << QPoint(175, 210) << QPoint(215, 160);
}

void TestMicroGeometry::atomSamples() {
    QFETCH(int, reaction);
    QFETCH(int, atom);
    QFETCH(int, kind);
    QFETCH(QPoint, start);
    QFETCH(QPoint, end);
    AppState s;
    micro::referencesmicro(s, static_cast<std::int16_t>(reaction));
    const auto i = static_cast<std::size_t>(atom);
    QCOMPARE(s.AtomKind[i], kind);
    QCOMPARE(QPoint(s.StartX[i], s.StartY[i]), start);
    QCOMPARE(QPoint(s.EndX[i], s.EndY[i]), end);
}

void TestMicroGeometry::referencesmicroFillsButaneSlots() {
    AppState s;
    micro::referencesmicro(s, 4);
    for (std::size_t i = 1; i <= 54; ++i) {
        QVERIFY2(s.AtomKind[i] >= micro::Carbon && s.AtomKind[i] <= micro::Oxygen,
                 qPrintable(QString::number(i)));
        QVERIFY(s.StartX[i] > 0 && s.EndX[i] > 0);
    }
    QCOMPARE(s.AtomKind[0], 0); // slot 0 is never used
}

void TestMicroGeometry::otherIndicesLeaveArrays() {
    for (const std::int16_t index : {std::int16_t{0}, std::int16_t{9}, std::int16_t{-1}}) {
        AppState s;
        micro::referencesmicro(s, 6);
        micro::referencesmicro(s, index);
        QCOMPARE(s.AtomKind[3], micro::Chlorine);
        QCOMPARE(s.EndX[4], 220);
        QVERIFY(!micro::animationConstants(index));
    }
}

void TestMicroGeometry::constants_data() {
    QTest::addColumn<int>("reaction");
    QTest::addColumn<int>("atoms");
    QTest::addColumn<int>("breaks");
    QTest::addColumn<int>("formStart");
    QTest::addColumn<int>("forms");
    QTest::addColumn<int>("final");
    QTest::newRow("1") << 1 << 9 << 6 << 60 << 6 << 66;
    QTest::newRow("2") << 2 << 30 << 21 << 70 << 20 << 90;
    QTest::newRow("3") << 3 << 21 << 15 << 63 << 14 << 77;
    QTest::newRow("4") << 4 << 54 << 39 << 99 << 36 << 135;
    QTest::newRow("5") << 5 << 6 << 3 << 27 << 4 << 31;
    QTest::newRow("6") << 6 << 4 << 2 << 18 << 2 << 20;
    QTest::newRow("7") << 7 << 18 << 13 << 72 << 12 << 84;
    QTest::newRow("8") << 8 << 15 << 11 << 54 << 10 << 64;
}

void TestMicroGeometry::constants() {
    QFETCH(int, reaction);
    const auto c = micro::animationConstants(reaction);
    QVERIFY(c);
    QTEST(int{c->atomCount}, "atoms");
    QTEST(int{c->breakCount}, "breaks");
    QTEST(int{c->formStartStep}, "formStart");
    QTEST(int{c->formCount}, "forms");
    AppState s;
    s.FormStartStep = c->formStartStep;
    s.FormCount = c->formCount;
    QTEST(int{micro::finalStep(s)}, "final");
    QCOMPARE(static_cast<int>(micro::cutBonds(reaction).size()), int{c->breakCount});
    QCOMPARE(static_cast<int>(micro::formedBonds(reaction).size()), int{c->formCount});
}

void TestMicroGeometry::bondOrders_data() {
    QTest::addColumn<int>("reaction");
    QTest::addColumn<QString>("cut");
    QTest::addColumn<QString>("formed");
    // H C–H, C C–C, O O=O, o C–O, h O–H, d C=O, y H–H, l Cl–Cl, x H–Cl
    QTest::newRow("1") << 1 << "HHHHOO"
                       << "ddhhhh";
    QTest::newRow("2") << 2 << "HCHHHHHHCHHHHHOOOOOOO"
                       << "ddddddddhhhhhhhhhhhh";
    QTest::newRow("3") << 3 << "HCCHHHHHHHOOOOO"
                       << "ddddddhhhhhhhh";
    QTest::newRow("4") << 4 << "HCCCHHHHHHHHHHCCCHHHHHHHHHOOOOOOOOOOOOO"
                       << "ddddddddddddddddhhhhhhhhhhhhhhhhhhhh";
    QTest::newRow("5") << 5 << "yyO"
                       << "hhhh";
    QTest::newRow("6") << 6 << "yl"
                       << "xx";
    QTest::newRow("7") << 7 << "HoHHhHoHHhOOO"
                       << "ddddhhhhhhhh";
    QTest::newRow("8") << 8 << "HCoHHHHhOOO"
                       << "ddddhhhhhh";
}

void TestMicroGeometry::bondOrders() {
    QFETCH(int, reaction);
    QTEST(sequence(micro::cutBonds(reaction)), "cut");
    QTEST(sequence(micro::formedBonds(reaction)), "formed");
}

void TestMicroGeometry::bondEnergies_data() {
    QTest::addColumn<int>("reaction");
    QTest::addColumn<int>("cut");
    QTest::addColumn<int>("formed");
    // The alcohols' C–O counts 360 while cutting: 8 and 4 above the broken-bonds totals.
    QTest::newRow("1") << 1 << 2628 << 3430;
    QTest::newRow("2") << 2 << 9074 << 11880;
    QTest::newRow("3") << 3 << 6446 << 8450;
    QTest::newRow("4") << 4 << 16710 << 21920;
    QTest::newRow("5") << 5 << 1358 << 1840;
    QTest::newRow("6") << 6 << 672 << 856;
    QTest::newRow("7") << 7 << 5582 << 6860;
    QTest::newRow("8") << 8 << 4700 << 5940;
}

void TestMicroGeometry::bondEnergies() {
    QFETCH(int, reaction);
    int cut = 0, formed = 0;
    for (const BondLine& b : micro::cutBonds(reaction))
        cut += micro::cuttingEnergy(b.type);
    for (const BondLine& b : micro::formedBonds(reaction))
        formed += micro::formingEnergy(b.type);
    QTEST(cut, "cut");
    QTEST(formed, "formed");
    QCOMPARE(micro::cuttingEnergy(BondType::CO), 360);
    QCOMPARE(chemistry::bondInfo(BondType::CO).kjPerMol, 356);
}

void TestMicroGeometry::bondEndsOnAtomCentres_data() {
    QTest::addColumn<int>("reaction");
    for (int r = 1; r <= 8; ++r)
        QTest::newRow(qPrintable(QString::number(r))) << r;
}

// Every bond joins two atoms of the right elements at their centres, in the start layout for
// the cuts and in the end layout for the formations, and every atom ends up with its valence.
void TestMicroGeometry::bondEndsOnAtomCentres() {
    QFETCH(int, reaction);
    const auto layout = micro::atomLayout(reaction);
    for (const bool start : {true, false}) {
        std::map<std::pair<int, int>, int> atomAt; // centre -> index in layout
        for (std::size_t i = 0; i < layout.size(); ++i) {
            const auto& a = layout[i];
            const auto key = start ? std::pair<int, int>(a.startX, a.startY)
                                   : std::pair<int, int>(a.endX, a.endY);
            QVERIFY2(!atomAt.contains(key), "two atoms share a place");
            atomAt[key] = static_cast<int>(i);
        }
        std::vector<int> bondsOf(layout.size(), 0);
        std::set<std::pair<int, int>> pairs;
        const auto bonds = start ? micro::cutBonds(reaction) : micro::formedBonds(reaction);
        for (std::size_t k = 0; k < bonds.size(); ++k) {
            const BondLine& b = bonds[k];
            const QString where =
                QStringLiteral("%1 bond %2").arg(start ? "cut" : "formed").arg(k + 1);
            QVERIFY2(b.x1 < b.x2 || (b.x1 == b.x2 && b.y1 < b.y2), qPrintable(where));
            const auto a1 = atomAt.find({b.x1, b.y1});
            const auto a2 = atomAt.find({b.x2, b.y2});
            QVERIFY2(a1 != atomAt.end() && a2 != atomAt.end(), qPrintable(where));
            const int k1 = layout[static_cast<std::size_t>(a1->second)].kind;
            const int k2 = layout[static_cast<std::size_t>(a2->second)].kind;
            QCOMPARE(std::make_pair(std::min(k1, k2), std::max(k1, k2)), elementsOf(b.type));
            QVERIFY2(pairs.insert(std::minmax(a1->second, a2->second)).second, qPrintable(where));
            const int order = micro::isDoubleBond(b.type) ? 2 : 1;
            bondsOf[static_cast<std::size_t>(a1->second)] += order;
            bondsOf[static_cast<std::size_t>(a2->second)] += order;
        }
        for (std::size_t i = 0; i < layout.size(); ++i)
            QVERIFY2(
                bondsOf[i] == valence(layout[i].kind),
                qPrintable(QStringLiteral("%1 atom %2").arg(start ? "start" : "end").arg(i + 1)));
    }
}

void TestMicroGeometry::methaneStrokes_data() {
    QTest::addColumn<bool>("cut");
    QTest::addColumn<int>("bond");
    QTest::addColumn<QList<BondStroke>>("strokes");
    QTest::newRow("cut 1") << true << 1 << QList<BondStroke>{box(125, 110, 155, 111)};
    QTest::newRow("cut 2") << true << 2 << QList<BondStroke>{box(155, 110, 185, 111)};
    QTest::newRow("cut 3") << true << 3 << QList<BondStroke>{box(155, 80, 156, 110)};
    QTest::newRow("cut 4") << true << 4 << QList<BondStroke>{box(155, 110, 156, 140)};
    QTest::newRow("cut 5") << true << 5
                           << QList<BondStroke>{box(90, 237, 120, 238), box(90, 242, 120, 243)};
    QTest::newRow("cut 6") << true << 6
                           << QList<BondStroke>{box(180, 237, 210, 238), box(180, 242, 210, 243)};
    QTest::newRow("formed 1") << false << 1
                              << QList<BondStroke>{box(125, 107, 155, 108),
                                                   box(125, 112, 155, 113)};
    QTest::newRow("formed 2") << false << 2
                              << QList<BondStroke>{box(155, 107, 185, 108),
                                                   box(155, 112, 185, 113)};
    QTest::newRow("formed 3") << false << 3
                              << QList<BondStroke>{plain(105, 200, 120, 225),
                                                   plain(106, 200, 121, 225)};
    QTest::newRow("formed 4") << false << 4
                              << QList<BondStroke>{plain(105, 250, 120, 225),
                                                   plain(106, 250, 121, 225)};
    QTest::newRow("formed 5") << false << 5
                              << QList<BondStroke>{plain(195, 200, 210, 225),
                                                   plain(196, 200, 211, 225)};
    QTest::newRow("formed 6") << false << 6
                              << QList<BondStroke>{plain(195, 250, 210, 225),
                                                   plain(196, 250, 211, 225)};
}

void TestMicroGeometry::methaneStrokes() {
    QFETCH(bool, cut);
    QFETCH(int, bond);
    QFETCH(QList<BondStroke>, strokes);
    const auto bonds = cut ? micro::cutBonds(1) : micro::formedBonds(1);
    const micro::BondStrokes got = micro::bondStrokes(bonds[static_cast<std::size_t>(bond - 1)]);
    QCOMPARE(got.count, strokes.size());
    for (int i = 0; i < got.count; ++i)
        QVERIFY2(got.strokes[static_cast<std::size_t>(i)] == strokes[i],
                 qPrintable(QStringLiteral("stroke %1").arg(i + 1)));
}

// The alcohols' O–H is the one slanted bond among the reactants: a thick line, not a box.
void TestMicroGeometry::alcoholSlantedCut() {
    const micro::BondStrokes methanol = micro::bondStrokes(micro::cutBonds(7)[4]);
    QCOMPARE(methanol.count, 2);
    QVERIFY(methanol.strokes[0] == plain(175, 60, 190, 35));
    QVERIFY(methanol.strokes[1] == plain(176, 60, 191, 35));
    const micro::BondStrokes ethanol = micro::bondStrokes(micro::cutBonds(8)[7]);
    QVERIFY(ethanol.strokes[0] == plain(195, 110, 210, 85));
    QVERIFY(ethanol.strokes[1] == plain(196, 110, 211, 85));
}

QTEST_GUILESS_MAIN(TestMicroGeometry)
#include "tst_microgeometry.moc"
