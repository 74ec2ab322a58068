#include "micro/bonds.h"
#include "micro/captions.h"
#include "micro/geometry.h"
#include "platform/checkedint.h"

#include <QTest>
#include <map>
#include <set>

namespace {

// Bond types as letters, in BondType order: C–H, C–C, O=O, C–O, O–H, C=O, H–H, Cl–Cl, H–Cl.
const QString kLetters = QStringLiteral("HCOohdylx");
// Elements each type joins (smaller code first) and each element's valence.
const std::pair<int, int> kJoins[] = {{1, 2}, {1, 1}, {3, 3}, {1, 3}, {2, 3},
                                      {1, 3}, {2, 2}, {4, 4}, {2, 4}};
const int kValence[] = {0, 4, 1, 2, 1};

QString letters(std::span<const micro::BondLine> bonds) {
    QString s;
    for (const auto& b : bonds)
        s += kLetters[static_cast<int>(b.type)];
    return s;
}

// The state and the step logic, driven as the main window does on a reaction change.
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
    void runTo(int step) {
        while (s.AnimStep < step)
            call();
    }
    // A fresh state leaves the slots past the reaction's atoms at 0 in both.
    bool atomsAtEnd() const { return s.AtomX == s.EndX && s.AtomY == s.EndY; }
};

// Runs as "text@x,y" (placed) or "text@y" (continued), with b, i and non-default sizes.
QString describe(const std::vector<micro::TextRun>& runs) {
    QStringList out;
    for (const micro::TextRun& r : runs)
        out << r.text + QLatin1Char('@') + (r.x ? QString::number(*r.x) + QLatin1Char(',') : "") +
                   QString::number(r.y) + (r.bold ? " b" : "") + (r.italic ? " i" : "") +
                   (r.fontSize != micro::PanelFontSize ? " " + QString::number(r.fontSize) : "");
    return out.join(QLatin1String(" / "));
}

} // namespace

class TestMicroEngine : public QObject {
    Q_OBJECT
private slots:
    void atomSamples_data() {
        QTest::addColumn<int>("reaction");
        QTest::addColumn<int>("atom");
        QTest::addColumn<QList<int>>("placement"); // kind, start x, y, end x, y
        QTest::newRow("methane carbon stays") << 1 << 2 << QList{1, 155, 110, 155, 110};
        QTest::newRow("HCl 1") << 6 << 1 << QList{2, 145, 110, 100, 160};
        QTest::newRow("HCl 2") << 6 << 2 << QList{2, 175, 110, 190, 160};
        QTest::newRow("HCl 3") << 6 << 3 << QList{4, 145, 210, 130, 160};
        QTest::newRow("HCl 4") << 6 << 4 << QList{4, 175, 210, 220, 160};
        QTest::newRow("butane 54") << 4 << 54 << QList{3, 295, 320, 285, 295};
    }

    void atomSamples() {
        QFETCH(int, reaction);
        QFETCH(int, atom);
        AppState s;
        micro::referencesmicro(s, 6);
        micro::referencesmicro(s, 9); // not a reaction: the arrays stay as they were
        QCOMPARE(s.AtomKind[3], micro::Chlorine);
        micro::referencesmicro(s, static_cast<std::int16_t>(reaction));
        const auto i = static_cast<std::size_t>(atom);
        QTEST((QList<int>{s.AtomKind[i], s.StartX[i], s.StartY[i], s.EndX[i], s.EndY[i]}),
              "placement");
    }

    void bondsJoinAtomCentres_data() {
        QTest::addColumn<int>("reaction");
        for (int r = 1; r <= 8; ++r)
            QTest::newRow(qPrintable(QString::number(r))) << r;
    }

    // Each cut bond joins two atom centres of the start layout, each formed bond two of the end
    // layout, of the elements its type names; no pair twice; every atom gets its valence.
    void bondsJoinAtomCentres() {
        QFETCH(int, reaction);
        const auto layout = micro::atomLayout(reaction);
        for (const bool start : {true, false}) {
            std::map<std::pair<int, int>, std::size_t> atomAt;
            for (std::size_t i = 0; i < layout.size(); ++i)
                atomAt[start ? std::pair<int, int>{layout[i].startX, layout[i].startY}
                             : std::pair<int, int>{layout[i].endX, layout[i].endY}] = i;
            QCOMPARE(atomAt.size(), layout.size());
            std::vector<int> valence(layout.size(), 0);
            std::set<std::pair<std::size_t, std::size_t>> pairs;
            for (const auto& b : start ? micro::cutBonds(reaction) : micro::formedBonds(reaction)) {
                QVERIFY(b.x1 < b.x2 || (b.x1 == b.x2 && b.y1 < b.y2));
                const auto a = atomAt.find({b.x1, b.y1}), c = atomAt.find({b.x2, b.y2});
                QVERIFY(a != atomAt.end() && c != atomAt.end());
                const std::pair<int, int> joined =
                    std::minmax<int>(layout[a->second].kind, layout[c->second].kind);
                QCOMPARE(joined, kJoins[static_cast<int>(b.type)]);
                QVERIFY(pairs.insert(std::minmax(a->second, c->second)).second);
                for (const std::size_t end : {a->second, c->second})
                    valence[end] += micro::isDoubleBond(b.type) ? 2 : 1;
            }
            for (std::size_t i = 0; i < layout.size(); ++i)
                QCOMPARE(valence[i], kValence[layout[i].kind]);
        }
    }

    void stepByStep_data() {
        QTest::addColumn<int>("reaction");
        QTest::addColumn<QList<int>>("plan");     // atoms, breaks, form start, final step
        QTest::addColumn<QString>("bonds");       // cut order / forming order
        QTest::addColumn<QList<float>>("energy"); // after the cuts, at the end
        QTest::newRow("1") << 1 << QList{9, 6, 60, 66} << "HHHHOO/ddhhhh" << QList{2628.f, -802.f};
        QTest::newRow("2") << 2 << QList{30, 21, 70, 90}
                           << "HCHHHHHHCHHHHHOOOOOOO/ddddddddhhhhhhhhhhhh"
                           << QList{9074.f, -2806.f};
        QTest::newRow("3") << 3 << QList{21, 15, 63, 77} << "HCCHHHHHHHOOOOO/ddddddhhhhhhhh"
                           << QList{6446.f, -2004.f};
        QTest::newRow("4")
            << 4 << QList{54, 39, 99, 135}
            << "HCCCHHHHHHHHHHCCCHHHHHHHHHOOOOOOOOOOOOO/ddddddddddddddddhhhhhhhhhhhhhhhhhhhh"
            << QList{16710.f, -5210.f};
        QTest::newRow("5") << 5 << QList{6, 3, 27, 31} << "yyO/hhhh" << QList{1358.f, -482.f};
        QTest::newRow("6") << 6 << QList{4, 2, 18, 20} << "yl/xx" << QList{672.f, -184.f};
        // C–O is cut at 360, not the table's 356: 8 above the broken total 5574.
        QTest::newRow("7") << 7 << QList{18, 13, 72, 84} << "HoHHhHoHHhOOO/ddddhhhhhhhh"
                           << QList{5582.f, -1278.f};
        QTest::newRow("8") << 8 << QList{15, 11, 54, 64} << "HCoHHHHhOOO/ddddhhhhhh"
                           << QList{4700.f, -1240.f};
    }

    // One call per timer tick from the initial state to the end and one more: the step drawn,
    // bonds shown, energy, interval and stop at every step.
    void stepByStep() {
        QFETCH(int, reaction);
        QFETCH(QList<float>, energy);
        const auto cuts = micro::cutBonds(reaction);
        const auto forms = micro::formedBonds(reaction);
        QTEST(letters(cuts) + '/' + letters(forms), "bonds");
        Rig r;
        r.select(reaction);
        QVERIFY(r.out.frame.showCut && r.out.frame.cutStep == 0);
        QCOMPARE(r.s.CurrentEnergy, 0.f);
        QCOMPARE(r.out.frame.atomCount, r.s.AtomCount);
        QCOMPARE(r.s.AnimStep, 1);
        const int breaks = r.s.BreakCount, formStart = r.s.FormStartStep;
        const int last = micro::finalStep(r.s);
        QTEST((QList<int>{r.s.AtomCount, breaks, formStart, last}), "plan");
        float sum = 0;
        for (int step = 1; step <= last + 1; ++step) {
            r.call();
            const int drawn = std::min(step, last);
            const QByteArray at = QByteArray::number(step);
            QVERIFY2(r.out.completed && r.out.diagram.step == drawn, at);
            QVERIFY2(r.out.stopTimer == (step >= last), at);
            QVERIFY2(r.out.intervalMs == ((drawn < breaks || drawn > formStart) ? 500 : 20), at);
            QVERIFY2(r.out.frame.showCut == (drawn <= breaks), at);
            if (drawn <= breaks)
                sum += micro::cuttingEnergy(cuts[drawn - 1].type);
            if (drawn > formStart)
                sum -= micro::formingEnergy(forms[drawn - formStart - 1].type);
            QVERIFY2(r.s.CurrentEnergy == sum, at);
            QVERIFY2(r.out.frame.formedCount == std::max(0, drawn - formStart), at);
            QVERIFY2(r.atomsAtEnd() == (drawn >= formStart), at);
            if (drawn == breaks || step == last)
                QCOMPARE(r.s.CurrentEnergy, energy[step == last]);
            QCOMPARE(int{r.s.AnimStep}, std::min(step + 1, last));
        }
    }

    void simultaneousJumps() {
        Rig r;
        r.simultaneous = true;
        r.select(1);
        r.call(); // all reactant bonds gone at once
        QCOMPARE((QList<int>{r.out.diagram.step, r.out.intervalMs, r.s.AnimStep}),
                 QList({7, 20, 8}));
        QVERIFY(!r.out.frame.showCut);
        QCOMPARE(r.s.CurrentEnergy, 2628.f);
        r.runTo(60);
        QCOMPARE(r.s.CurrentEnergy, 2628.f);
        r.call(); // from the end of the drift straight to the final state
        QCOMPARE((QList<int>{r.out.diagram.step, r.out.intervalMs, r.out.frame.formedCount}),
                 QList({66, 500, 6}));
        QCOMPARE(r.s.CurrentEnergy, -802.f);
        QVERIFY(r.atomsAtEnd() && !r.out.stopTimer);
        r.call();
        QVERIFY(r.out.stopTimer);
        QCOMPARE(r.s.AnimStep, 66);
    }

    // Per atom and step one random value in {−1, 0, 1} moves both coordinates: by 3 towards the
    // target while 11 or more away, else by 1. The same seed gives the same drift.
    void driftSharesOneJitterPerAtom() {
        const auto driftOf = [](std::uint32_t seed) {
            Rig r;
            r.anim.random().reseed(seed);
            r.select(4);
            r.runTo(r.s.BreakCount + 1);
            std::vector<AppState> states{r.s};
            while (states.size() <= 20) {
                r.call();
                states.push_back(r.s);
            }
            return states;
        };
        const auto jitter = [](int from, int to, int target) {
            const int d = std::abs(from - target) < 11 ? 1 : 3;
            return (to - from) - (from <= target ? d : -d);
        };
        const auto states = driftOf(12345);
        for (std::size_t k = 1; k < states.size(); ++k)
            for (std::size_t i = 1; i <= 54; ++i) {
                const AppState &a = states[k - 1], &b = states[k];
                const int rx = jitter(a.AtomX[i], b.AtomX[i], a.EndX[i]);
                QVERIFY(rx >= -1 && rx <= 1);
                QCOMPARE(jitter(a.AtomY[i], b.AtomY[i], a.EndY[i]), rx);
            }
        QVERIFY(driftOf(12345).back().AtomX == states.back().AtomX);
        QVERIFY(driftOf(54321).back().AtomX != states.back().AtomX);
    }

    void overflowAbandonsTheStep() {
        Rig r;
        r.select(1);
        r.runTo(10);
        r.s.AtomX[1] = -32768; // its distance to the target no longer fits 16 bits
        QVERIFY_THROWS_EXCEPTION(platform::OverflowError, r.call());
        QCOMPARE(r.out.intervalMs, 20); // decided before the failure
        QVERIFY(!r.out.completed);
        QCOMPARE(r.s.AnimStep, 10);
        r.index = 0; // an unknown reaction keeps the constants and cuts nothing
        r.s.AnimStep = 3;
        r.call();
        QCOMPARE(r.s.BreakCount, 6);
        QVERIFY(!r.out.frame.showCut);
    }

    void banner_data() {
        QTest::addColumn<int>("reaction");
        QTest::addColumn<QString>("runs"); // "_" subscript (size 8, 4 lower), ">" the arrow
        QTest::newRow("4") << 4 << "1|2 C|_4|H|_10| + 13 O|_2|>| 8 CO|_2| + 10 H|_2|O";
        QTest::newRow("6") << 6 << "12|H|_2| + Cl|_2|>| 2 HCl";
        QTest::newRow("reserve") << 9 << "5|N|_2| + 3 H|_2|>| 2 NH|_3";
        QTest::newRow("none") << 0 << "";
    }

    void banner() {
        QFETCH(int, reaction);
        QStringList parts;
        for (const micro::TextRun& r : micro::bannerRuns(reaction)) {
            QVERIFY(r.bold && !r.italic && r.x.has_value() == parts.isEmpty());
            if (r.x && *r.x == 63 && r.y == 15 && r.text.trimmed().isEmpty())
                parts << QString::number(r.text.size());
            else if (r.fontName == QLatin1String("Symbol"))
                parts << (r.text == " \u00BE\u00AE" && r.y == 15 && r.fontSize == 10 ? ">" : "?");
            else
                parts << (r.fontSize == 8 && r.y == 19    ? "_" + r.text
                          : r.fontSize == 10 && r.y == 15 ? r.text
                                                          : "?");
        }
        QTEST(parts.join(QLatin1Char('|')), "runs");
    }

    void diagram_data() {
        QTest::addColumn<int>("step");
        QTest::addColumn<float>("current");
        QTest::addColumn<bool>("since");
        QTest::addColumn<QString>("shape"); // bar tops and bottoms ×10, then the labels
        // Methane: 300 − 2628/63 = 258.3; label 15 above the bar.
        QTest::newRow("third cut") << 3 << 1230.f << false << "2805 | + 2,0@265.476";
        QTest::newRow("placed") << 60 << 2628.f << false
                                << "2583 2583-2583 | + 4,4@243.286 | + 4,4@258.286";
        QTest::newRow("final") << 66 << -460.f << false
                               << "2583 2583-3127 | + 4,4@243.286 |  -1,3@312.73";
        QTest::newRow("final, since")
            << 66 << -460.f << true << "2583 2583-3127 | + 4,4@243.286 |  -5,7@312.73";
    }

    void diagram() {
        QFETCH(int, step);
        QFETCH(float, current);
        QFETCH(bool, since);
        const auto d = micro::energyDiagram(
            {static_cast<std::int16_t>(step), 6, 60, 66, current, 2628, 3430}, since);
        QCOMPARE(QList({d.received.x1, d.received.x2, d.received.y2}), QList({5.0, 25.0, 300.0}));
        QString shape = QString::number(std::round(d.received.y1 * 10));
        if (d.released) {
            QCOMPARE(QList({d.released->x1, d.released->x2}), QList({28.0, 48.0}));
            shape += QStringLiteral(" %1-%2")
                         .arg(std::round(d.released->y1 * 10))
                         .arg(std::round(d.released->y2 * 10));
        }
        QCOMPARE(describe({d.runs.begin(), d.runs.begin() + 4}),
                 QStringLiteral("E@0,3 i 8 /  (10@3 8 / -18@0 8 /  J)@3 8"));
        for (std::size_t i = 4; i < d.runs.size(); ++i) {
            const micro::TextRun& r = d.runs[i];
            QCOMPARE((i == 4 ? r.x : r.rightEdge).value_or(-1), i == 4 ? 5.0 : 48.0);
            shape += QStringLiteral(" | %1@%2").arg(r.text).arg(std::round(r.y * 1000) / 1000);
        }
        QTEST(shape, "shape");
    }

    void dataPanel_data() {
        QTest::addColumn<int>("reaction");
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("runs");
        const QString head = QStringLiteral("Données :@10,3 b / ");
        QTest::newRow("6 micro")
            << 6 << 1
            << head + "D@40,29 i / H – H@36 /  = 0,718 · 10@29 / -18@26 /  J@29 / "
                      "D@200,29 i / Cl – Cl@36 /  = 0,399 · 10@29 / -18@26 /  J@29 / "
                      "D@40,55 i / H – Cl@62 /  = 0,712 · 10@55 / -18@52 /  J@55 / "
                      "Q@90,131 b i 10 / r@134 b 10 /  = – 0,31@131 b 10 /  · 10@131 b 10 / "
                      "-18@128 b 8 /  J@131 b 10";
        QTest::newRow("8 macro")
            << 8 << 2
            << head + "D@40,29 i / C – H@36 /  = 410 kJ · mol@29 / -1@26 / "
                      "D@200,29 i / C – C@36 /  = 348 kJ · mol@29 / -1@26 / "
                      "D@40,55 i / O = O@62 /  = 494 kJ · mol@55 / -1@52 / "
                      "D@200,55 i / C – O@62 /  = 356 kJ · mol@55 / -1@52 / "
                      "D@40,81 i / O – H@88 /  = 460 kJ · mol@81 / -1@78 / "
                      "D@40,107 i / C = O (dans CO@114 / 2@117 / )@114 /  = 795 kJ · mol@107 / "
                      "-1@104 / Q@90,131 b i 10 / r@134 b 10 /  = – 1 244@131 b 10 / "
                      " kJ · mol@131 b 10 / -1@128 b 8";
    }

    void dataPanel() {
        QFETCH(int, reaction);
        QFETCH(int, tab);
        const chemistry::BondTotals t = chemistry::computeTotals(reaction);
        QTEST(describe(micro::dataPanelRuns(reaction, tab, true, t.broken, t.formed)), "runs");
        // Before the strip is first painted the tab is 0: still the Micro units.
        QCOMPARE(describe(micro::dataPanelRuns(reaction, 0, true, t.broken, t.formed)),
                 describe(micro::dataPanelRuns(reaction, 1, true, t.broken, t.formed)));
    }
};

QTEST_GUILESS_MAIN(TestMicroEngine)
#include "tst_microengine.moc"
