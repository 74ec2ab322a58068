#include "chemistry/catalogue.h"
#include "micro/animation.h"
#include "micro/bonds.h"
#include "micro/geometry.h"
#include "platform/checkedint.h"

#include <QTest>

namespace {

// The state and the step logic, as the main window drives them on a reaction change.
struct Rig {
    AppState s;
    micro::Animation anim{s};
    micro::StepOutcome out;
    std::int16_t index = 0;
    bool simultaneous = false;

    void select(int reaction) {
        index = static_cast<std::int16_t>(reaction);
        const chemistry::BondTotals t = chemistry::computeTotals(reaction);
        s.BrokenBondsEnergy = t.broken;
        s.FormedBondsEnergy = t.formed;
        s.AnimStep = 0;
        call();
    }
    void call() { anim.step(index, simultaneous, out); }
};

bool atomsAtEnd(const AppState& s) {
    for (std::size_t i = 1; i <= static_cast<std::size_t>(s.AtomCount); ++i)
        if (s.AtomX[i] != s.EndX[i] || s.AtomY[i] != s.EndY[i])
            return false;
    return true;
}

} // namespace

class TestMicroAnimation : public QObject {
    Q_OBJECT
private slots:
    void stepByStep_data();
    void stepByStep();
    void hydrogenChlorideStates();
    void simultaneousJumps();
    void driftSharesOneJitterPerAtom();
    void driftIsRepeatableBySeed();
    void methaneCarbonStaysNearItsPlace();
    void jitterValues();
    void overflowAbandonsTheStep();
    void unknownIndexKeepsConstants();
    void readout_data();
    void readout();
};

void TestMicroAnimation::stepByStep_data() {
    QTest::addColumn<int>("reaction");
    QTest::addColumn<int>("finalStep");
    QTest::addColumn<float>("afterCuts");
    QTest::addColumn<float>("atEnd");
    QTest::newRow("methane") << 1 << 66 << 2628.f << -802.f;
    QTest::newRow("hydrogen chloride") << 6 << 20 << 672.f << -184.f;
    // C–O counted 360 while cutting: 8 above the broken-bonds total of 5574.
    QTest::newRow("methanol") << 7 << 84 << 5582.f << -1278.f;
}

// One call per timer tick from the initial state to the end: the step drawn, the energy after
// each cut and formation, the timer interval and the stop.
void TestMicroAnimation::stepByStep() {
    QFETCH(int, reaction);
    QFETCH(int, finalStep);
    QFETCH(float, afterCuts);
    QFETCH(float, atEnd);
    Rig r;
    r.select(reaction);
    QCOMPARE(r.out.diagram.step, 0);
    QCOMPARE(r.s.CurrentEnergy, 0.f);
    QVERIFY(r.out.frame.showCut);
    QCOMPARE(r.out.frame.cutStep, 0);
    QCOMPARE(r.out.frame.atomCount, r.s.AtomCount);
    QCOMPARE(r.s.AnimStep, 1);
    QCOMPARE(int{micro::finalStep(r.s)}, finalStep);

    const auto cuts = micro::cutBonds(reaction);
    const auto forms = micro::formedBonds(reaction);
    const int breaks = r.s.BreakCount;
    const int formStart = r.s.FormStartStep;
    float energy = 0;
    for (int step = 1; step <= finalStep; ++step) {
        r.call();
        const QByteArray at = QByteArray::number(step);
        QVERIFY2(r.out.completed, at);
        QCOMPARE(r.out.diagram.step, step);
        QCOMPARE(r.out.stopTimer, step == finalStep);
        const int interval = (step < breaks || step > formStart) ? 500 : 20;
        QVERIFY2(r.out.intervalMs == interval, at);
        QCOMPARE(r.out.frame.showCut, step <= breaks);
        if (step <= breaks) {
            QCOMPARE(r.out.frame.cutStep, step);
            energy += micro::cuttingEnergy(cuts[static_cast<std::size_t>(step - 1)].type);
        }
        if (step > formStart)
            energy -=
                micro::formingEnergy(forms[static_cast<std::size_t>(step - formStart - 1)].type);
        QVERIFY2(r.s.CurrentEnergy == energy, at);
        QCOMPARE(int{r.out.frame.formedCount}, std::max(0, step - formStart));
        if (step >= formStart)
            QVERIFY2(atomsAtEnd(r.s), at);
        if (step == breaks)
            QCOMPARE(r.s.CurrentEnergy, afterCuts);
        QCOMPARE(int{r.s.AnimStep}, std::min(step + 1, finalStep));
    }
    QCOMPARE(r.s.CurrentEnergy, atEnd);
    QCOMPARE(r.s.AnimStep, finalStep);

    // The tick after the end redraws the final state, stops, and counts nothing more.
    r.call();
    QVERIFY(r.out.stopTimer);
    QCOMPARE(r.out.diagram.step, finalStep);
    QCOMPARE(r.s.AnimStep, finalStep);
}

void TestMicroAnimation::hydrogenChlorideStates() {
    Rig r;
    r.select(6);
    r.call(); // step 1: H–H cut
    QCOMPARE(r.s.CurrentEnergy, 432.f);
    r.call(); // step 2: Cl–Cl cut
    QCOMPARE(r.s.CurrentEnergy, 672.f);
    QCOMPARE(r.out.frame.cutStep, 2);
    for (int step = 3; step <= 17; ++step) {
        r.call();
        QVERIFY(!r.out.frame.showCut);
        QCOMPARE(r.out.frame.formedCount, 0);
        QCOMPARE(r.out.intervalMs, 20);
    }
    QVERIFY(!atomsAtEnd(r.s)); // the drift brings them near, not onto their places
    r.call();                  // step 18: atoms placed, no bond yet
    QVERIFY(atomsAtEnd(r.s));
    QCOMPARE(r.out.frame.formedCount, 0);
    QCOMPARE(r.out.intervalMs, 20);
    r.call(); // step 19
    QCOMPARE(r.out.frame.formedCount, 1);
    QCOMPARE(r.s.CurrentEnergy, 672.f - 428.f);
    QCOMPARE(r.out.intervalMs, 500);
    r.call(); // step 20: final
    QCOMPARE(r.out.frame.formedCount, 2);
    QCOMPARE(r.s.CurrentEnergy, -184.f);
    QVERIFY(r.out.stopTimer);
    QCOMPARE(r.out.frame.x[3], 130);
    QCOMPARE(r.out.frame.y[3], 160);
}

void TestMicroAnimation::simultaneousJumps() {
    Rig r;
    r.simultaneous = true;
    r.select(1);
    QCOMPARE(r.out.diagram.step, 0);
    QCOMPARE(r.s.CurrentEnergy, 0.f);
    QVERIFY(r.out.frame.showCut);
    QCOMPARE(r.s.AnimStep, 1);

    // First jump: every reactant bond gone at once, the whole energy taken in.
    r.call();
    QCOMPARE(r.out.diagram.step, 7);
    QVERIFY(!r.out.frame.showCut);
    QCOMPARE(r.s.CurrentEnergy, 2628.f);
    QCOMPARE(r.out.intervalMs, 20);
    QCOMPARE(r.s.AnimStep, 8);

    while (r.s.AnimStep < 60) {
        r.call();
        QCOMPARE(r.s.CurrentEnergy, 2628.f);
        QCOMPARE(r.out.frame.formedCount, 0);
    }
    // Second jump: from the end of the drift straight to the final state.
    r.call();
    QCOMPARE(r.out.diagram.step, 66);
    QCOMPARE(r.out.frame.formedCount, 6);
    QCOMPARE(r.s.CurrentEnergy, -802.f);
    QCOMPARE(r.out.diagram.current, -802.f);
    QVERIFY(atomsAtEnd(r.s));
    QCOMPARE(r.out.intervalMs, 500);
    QVERIFY(!r.out.stopTimer);
    QCOMPARE(r.s.AnimStep, 66);
    r.call();
    QVERIFY(r.out.stopTimer);
    QCOMPARE(r.s.AnimStep, 66);
}

// One random value per atom and step moves both coordinates: towards the target by 3 (far)
// or 1 (within 10 units), plus the same jitter on x and y.
void TestMicroAnimation::driftSharesOneJitterPerAtom() {
    Rig r;
    r.anim.random().reseed(12345);
    r.select(4);
    while (r.s.AnimStep <= r.s.BreakCount)
        r.call();
    int checked = 0;
    for (int step = 0; step < 20; ++step) {
        const AppState before = r.s;
        r.call();
        for (std::size_t i = 1; i <= 54; ++i) {
            const auto jitter = [&](std::int16_t from, std::int16_t to, std::int16_t target) {
                const int d = std::abs(from - target) < 11 ? 1 : 3;
                return (to - from) - (from <= target ? d : -d);
            };
            const int rx = jitter(before.AtomX[i], r.s.AtomX[i], before.EndX[i]);
            const int ry = jitter(before.AtomY[i], r.s.AtomY[i], before.EndY[i]);
            QVERIFY2(rx >= -1 && rx <= 1, qPrintable(QStringLiteral("atom %1").arg(i)));
            QCOMPARE(rx, ry);
            ++checked;
        }
    }
    QCOMPARE(checked, 20 * 54);
}

void TestMicroAnimation::driftIsRepeatableBySeed() {
    const auto run = [](std::uint32_t seed) {
        Rig r;
        r.anim.random().reseed(seed);
        r.select(2);
        while (r.s.AnimStep < 40)
            r.call();
        return std::make_pair(r.s.AtomX, r.s.AtomY);
    };
    QCOMPARE(run(7), run(7));
    QVERIFY(run(7) != run(8));
}

void TestMicroAnimation::methaneCarbonStaysNearItsPlace() {
    Rig r;
    r.select(1);
    while (r.s.AnimStep < 60) {
        r.call();
        QVERIFY(std::abs(r.s.AtomX[2] - 155) <= 2);
        QVERIFY(std::abs(r.s.AtomY[2] - 110) <= 2);
    }
    r.call();
    QCOMPARE(r.s.AtomX[2], 155);
    QCOMPARE(r.s.AtomY[2], 110);
}

void TestMicroAnimation::jitterValues() {
    micro::DriftRandom a(99), b(99);
    int counts[3] = {0, 0, 0};
    for (int i = 0; i < 3000; ++i) {
        const int v = a.jitter();
        QCOMPARE(v, int{b.jitter()});
        QVERIFY(v >= -1 && v <= 1);
        ++counts[v + 1];
    }
    for (int c : counts)
        QVERIFY(c > 900);
    a.reseed(99);
    micro::DriftRandom c(99);
    QCOMPARE(a.next(), c.next());
}

void TestMicroAnimation::overflowAbandonsTheStep() {
    Rig r;
    r.select(1);
    while (r.s.AnimStep < 10)
        r.call();
    r.s.AtomX[1] = -32768; // the distance to its target no longer fits 16 bits
    QVERIFY_THROWS_EXCEPTION(platform::OverflowError, r.call());
    QCOMPARE(r.out.intervalMs, 20);
    QVERIFY(!r.out.completed);
    QCOMPARE(r.out.frame.atomCount, 0);
    QCOMPARE(r.s.AnimStep, 10);
}

void TestMicroAnimation::unknownIndexKeepsConstants() {
    Rig r;
    r.select(1);
    r.call();
    r.call(); // AnimStep 3
    const float energy = r.s.CurrentEnergy;
    r.index = 0;
    r.call();
    QCOMPARE(r.s.BreakCount, 6);
    QCOMPARE(r.s.FormStartStep, 60);
    QCOMPARE(r.s.AtomCount, 9);
    QCOMPARE(r.s.CurrentEnergy, energy); // no bond of an unknown reaction is cut
    QVERIFY(!r.out.frame.showCut);
    QCOMPARE(r.s.AnimStep, 4);
}

void TestMicroAnimation::readout_data() {
    QTest::addColumn<float>("current");
    QTest::addColumn<int>("broken");
    QTest::addColumn<int>("formed");
    QTest::addColumn<QString>("text");
    QTest::newRow("start") << 0.f << 2628 << 3430 << "0\n2628\n3430";
    QTest::newRow("negative") << -802.f << 2628 << 3430 << "-802\n2628\n3430";
    QTest::newRow("butane") << 16710.f << 16710 << 21920 << "16710\n16710\n21920";
    QTest::newRow("fraction") << 2.5f << 1 << 2 << "2,5\n1\n2";
}

void TestMicroAnimation::readout() {
    QFETCH(float, current);
    QFETCH(int, broken);
    QFETCH(int, formed);
    QTEST(micro::energyReadout(current, static_cast<std::int16_t>(broken),
                               static_cast<std::int16_t>(formed)),
          "text");
}

QTEST_GUILESS_MAIN(TestMicroAnimation)
#include "tst_microanimation.moc"
