#include "micro/captions.h"

#include <QTest>

using micro::TextRun;

namespace {

// A banner as one line: "_" before a subscript, ">" for the arrow, "|" between runs.
QString bannerShape(const std::vector<TextRun>& runs) {
    QStringList parts;
    for (std::size_t i = 1; i < runs.size(); ++i) {
        const TextRun& r = runs[i];
        if (r.fontName == QLatin1String("Symbol"))
            parts << (r.text == QStringLiteral(" \u00BE\u00AE") && r.y == 15 && r.fontSize == 10
                          ? QStringLiteral(">")
                          : QStringLiteral("?"));
        else if (r.fontSize == 8 && r.y == 19)
            parts << QLatin1Char('_') + r.text;
        else if (r.fontSize == 10 && r.y == 15)
            parts << r.text;
        else
            parts << QStringLiteral("?");
    }
    return parts.join(QLatin1Char('|'));
}

// A run list as text: "text@x,y" for a placed run, "text@y" for a continued one, with flags
// b (bold), i (italic) and the size when it is not the panel's.
QString describe(const std::vector<TextRun>& runs) {
    QStringList out;
    for (const TextRun& r : runs) {
        QString s = r.text + QLatin1Char('@');
        if (r.x)
            s += QString::number(*r.x) + QLatin1Char(',');
        s += QString::number(r.y);
        if (r.bold)
            s += QLatin1String(" b");
        if (r.italic)
            s += QLatin1String(" i");
        if (r.fontSize != micro::PanelFontSize)
            s += QLatin1Char(' ') + QString::number(r.fontSize);
        out << s;
    }
    return out.join(QLatin1String(" / "));
}

micro::DiagramInput methane(int step, float current) {
    return micro::DiagramInput{static_cast<std::int16_t>(step), 6, 60, 66, current, 2628, 3430};
}

} // namespace

class TestMicroCaptions : public QObject {
    Q_OBJECT
private slots:
    void banner_data();
    void banner();
    void diagram_data();
    void diagram();
    void diagramTitle();
    void panelGrid_data();
    void panelGrid();
    void panelRuns_data();
    void panelRuns();
};

void TestMicroCaptions::banner_data() {
    QTest::addColumn<int>("reaction");
    QTest::addColumn<int>("blanks");
    QTest::addColumn<QString>("shape");
    QTest::newRow("1") << 1 << 5 << "CH|_4| + 2 O|_2|>| CO|_2| + 2 H|_2|O";
    QTest::newRow("2") << 2 << 3 << "2 C|_2|H|_6| + 7 O|_2|>| 4 CO|_2| + 6 H|_2|O";
    QTest::newRow("3") << 3 << 5 << "C|_3|H|_8| + 5 O|_2|>| 3 CO|_2| + 4 H|_2|O";
    QTest::newRow("4") << 4 << 1 << "2 C|_4|H|_10| + 13 O|_2|>| 8 CO|_2| + 10 H|_2|O";
    QTest::newRow("5") << 5 << 11 << "2 H|_2| + O|_2|>| 2 H|_2|O";
    QTest::newRow("6") << 6 << 12 << "H|_2| + Cl|_2|>| 2 HCl";
    QTest::newRow("7") << 7 << 3 << "2 CH|_4|O + 3 O|_2|>| 2 CO|_2| + 4 H|_2|O";
    QTest::newRow("8") << 8 << 3 << "C|_2|H|_6|O + 3 O|_2|>| 2 CO|_2| + 3 H|_2|O";
    QTest::newRow("reserve") << 9 << 5 << "N|_2| + 3 H|_2|>| 2 NH|_3";
}

void TestMicroCaptions::banner() {
    QFETCH(int, reaction);
    QFETCH(int, blanks);
    const std::vector<TextRun> runs = micro::bannerRuns(reaction);
    QVERIFY(!runs.empty());
    QCOMPARE(runs[0].text, QString(blanks, QLatin1Char(' ')));
    QCOMPARE(runs[0].x, 63.0);
    QCOMPARE(runs[0].y, 15.0);
    for (const TextRun& r : runs) {
        QVERIFY(r.bold);
        QVERIFY(!r.italic);
        QVERIFY(!r.x || &r == &runs[0]);
    }
    QTEST(bannerShape(runs), "shape");
}

void TestMicroCaptions::diagram_data() {
    QTest::addColumn<int>("step");
    QTest::addColumn<float>("current");
    QTest::addColumn<bool>("since");
    QTest::addColumn<double>("receivedTop");
    QTest::addColumn<QString>("receivedLabel");
    QTest::addColumn<double>("receivedLabelY");
    QTest::addColumn<bool>("released");
    QTest::addColumn<double>("releasedBottom");
    QTest::addColumn<QString>("releasedLabel");
    QTest::addColumn<double>("releasedLabelY");
    const double eb = 300 - 2628 / 63.0;
    QTest::newRow("initial") << 0 << 0.f << false << 300.0 << "+ 0,0" << 285.0 << false << 0.0
                             << QString() << 0.0;
    QTest::newRow("third cut") << 3 << 1230.f << false << 300 - 1230 / 63.0 << "+ 2,0"
                               << 285 - 1230 / 63.0 << false << 0.0 << QString() << 0.0;
    // At the last cut the bar still follows the running energy.
    QTest::newRow("last cut") << 6 << 2628.f << false << eb << "+ 4,4" << eb - 15 << false << 0.0
                              << QString() << 0.0;
    QTest::newRow("drift") << 30 << 0.f << false << eb << "+ 4,4" << eb - 15 << false << 0.0
                           << QString() << 0.0;
    QTest::newRow("atoms placed") << 60 << 2628.f << false << eb << "+ 4,4" << eb - 15 << true << eb
                                  << "+ 4,4" << eb;
    QTest::newRow("two formed") << 62 << 1038.f << false << eb << "+ 4,4" << eb - 15 << true
                                << 300 - 1038 / 63.0 << "+ 1,7" << 300 - 1038 / 63.0;
    QTest::newRow("two formed, since intermediate")
        << 62 << 1038.f << true << eb << "+ 4,4" << eb - 15 << true << 300 - 1038 / 63.0 << " -2,6"
        << 300 - 1038 / 63.0;
    QTest::newRow("below zero") << 65 << -342.f << false << eb << "+ 4,4" << eb - 15 << true
                                << 300 + 342 / 63.0 << " -0,6" << 300 + 342 / 63.0;
    // The final state ignores the running energy: the bar ends at the heat of reaction.
    QTest::newRow("final") << 66 << -460.f << false << eb << "+ 4,4" << eb - 15 << true
                           << 300 + 802 / 63.0 << " -1,3" << 300 + 802 / 63.0;
    QTest::newRow("final, since intermediate")
        << 66 << -460.f << true << eb << "+ 4,4" << eb - 15 << true << 300 + 802 / 63.0 << " -5,7"
        << 300 + 802 / 63.0;
}

void TestMicroCaptions::diagram() {
    QFETCH(int, step);
    QFETCH(float, current);
    QFETCH(bool, since);
    const micro::EnergyDiagram d = micro::energyDiagram(methane(step, current), since);
    QCOMPARE(d.received.x1, 5.0);
    QCOMPARE(d.received.x2, 25.0);
    QCOMPARE(d.received.y2, 300.0);
    QTEST(d.received.y1, "receivedTop");

    QVERIFY(d.runs.size() >= 5);
    const TextRun& received = d.runs[4];
    QTEST(received.text, "receivedLabel");
    QCOMPARE(received.x, 5.0);
    QTEST(received.y, "receivedLabelY");

    QFETCH(bool, released);
    QCOMPARE(d.released.has_value(), released);
    QCOMPARE(d.runs.size(), released ? std::size_t{6} : std::size_t{5});
    if (!released)
        return;
    QCOMPARE(d.released->x1, 28.0);
    QCOMPARE(d.released->x2, 48.0);
    QCOMPARE(d.released->y1, 300 - 2628 / 63.0);
    QTEST(d.released->y2, "releasedBottom");
    const TextRun& label = d.runs[5];
    QTEST(label.text, "releasedLabel");
    QCOMPARE(label.rightEdge, 48.0);
    QVERIFY(!label.x);
    QTEST(label.y, "releasedLabelY");
}

void TestMicroCaptions::diagramTitle() {
    const micro::EnergyDiagram d = micro::energyDiagram(methane(0, 0), false);
    QCOMPARE(describe({d.runs.begin(), d.runs.begin() + 4}),
             QStringLiteral("E@0,3 i 8 /  (10@3 8 / -18@0 8 /  J)@3 8"));
}

void TestMicroCaptions::panelGrid_data() {
    QTest::addColumn<int>("reaction");
    QTest::addColumn<QString>("grid");
    QTest::newRow("1") << 1 << "H 40,29 O 200,29 h 40,55 d 40,81";
    QTest::newRow("2") << 2 << "H 40,29 C 200,29 O 40,55 h 200,55 d 40,81";
    QTest::newRow("3") << 3 << "H 40,29 C 200,29 O 40,55 h 200,55 d 40,81";
    QTest::newRow("4") << 4 << "H 40,29 C 200,29 O 40,55 h 200,55 d 40,81";
    QTest::newRow("5") << 5 << "y 40,29 O 200,29 h 40,55";
    QTest::newRow("6") << 6 << "y 40,29 l 200,29 x 40,55";
    QTest::newRow("7") << 7 << "H 40,29 o 200,29 O 40,55 h 200,55 d 40,81";
    QTest::newRow("8") << 8 << "H 40,29 C 200,29 O 40,55 o 200,55 h 40,81 d 40,107";
    QTest::newRow("none") << 0 << "";
}

void TestMicroCaptions::panelGrid() {
    QFETCH(int, reaction);
    static const QString letters = QStringLiteral("HCOohdylx"); // in BondType order
    QStringList got;
    for (const micro::PanelEntry& e : micro::panelEntries(reaction))
        got << QStringLiteral("%1 %2,%3").arg(letters[static_cast<int>(e.type)]).arg(e.x).arg(e.y);
    QTEST(got.join(QLatin1Char(' ')), "grid");
}

void TestMicroCaptions::panelRuns_data() {
    QTest::addColumn<int>("reaction");
    QTest::addColumn<int>("tab");
    QTest::addColumn<bool>("heat");
    QTest::addColumn<QString>("runs");
    const QString head = QStringLiteral("Données :@10,3 b / ");
    QTest::newRow("6 micro") << 6 << 1 << false
                             << head +
                                    "D@40,29 i / H – H@36 /  = 0,718 · 10@29 / -18@26 /  J@29 / "
                                    "D@200,29 i / Cl – Cl@36 /  = 0,399 · 10@29 / -18@26 /  J@29 / "
                                    "D@40,55 i / H – Cl@62 /  = 0,712 · 10@55 / -18@52 /  J@55";
    QTest::newRow("6 micro, heat")
        << 6 << 1 << true
        << head + "D@40,29 i / H – H@36 /  = 0,718 · 10@29 / -18@26 /  J@29 / "
                  "D@200,29 i / Cl – Cl@36 /  = 0,399 · 10@29 / -18@26 /  J@29 / "
                  "D@40,55 i / H – Cl@62 /  = 0,712 · 10@55 / -18@52 /  J@55 / "
                  "Q@90,131 b i 10 / r@134 b 10 /  = – 0,31@131 b 10 /  · 10@131 b 10 / "
                  "-18@128 b 8 /  J@131 b 10";
    // Before the strip is first painted the tab is 0: still the Micro units.
    QTest::newRow("6 no tab yet")
        << 6 << 0 << false
        << head + "D@40,29 i / H – H@36 /  = 0,718 · 10@29 / -18@26 /  J@29 / "
                  "D@200,29 i / Cl – Cl@36 /  = 0,399 · 10@29 / -18@26 /  J@29 / "
                  "D@40,55 i / H – Cl@62 /  = 0,712 · 10@55 / -18@52 /  J@55";
    QTest::newRow("8 macro, heat")
        << 8 << 2 << true
        << head +
               "D@40,29 i / C – H@36 /  = 410 kJ · mol@29 / -1@26 / "
               "D@200,29 i / C – C@36 /  = 348 kJ · mol@29 / -1@26 / "
               "D@40,55 i / O = O@62 /  = 494 kJ · mol@55 / -1@52 / "
               "D@200,55 i / C – O@62 /  = 356 kJ · mol@55 / -1@52 / "
               "D@40,81 i / O – H@88 /  = 460 kJ · mol@81 / -1@78 / "
               "D@40,107 i / C = O (dans CO@114 / 2@117 / )@114 /  = 795 kJ · mol@107 / -1@104 / "
               "Q@90,131 b i 10 / r@134 b 10 /  = – 1 244@131 b 10 /  kJ · mol@131 b 10 / "
               "-1@128 b 8";
    QTest::newRow("8 micro")
        << 8 << 1 << false
        << head + "D@40,29 i / C – H@36 /  = 0,681 · 10@29 / -18@26 /  J@29 / "
                  "D@200,29 i / C – C@36 /  = 0,578 · 10@29 / -18@26 /  J@29 / "
                  "D@40,55 i / O = O@62 /  = 0,821 · 10@55 / -18@52 /  J@55 / "
                  "D@200,55 i / C – O@62 /  = 0,591 · 10@55 / -18@52 /  J@55 / "
                  "D@40,81 i / O – H@88 /  = 0,764 · 10@81 / -18@78 /  J@81 / "
                  "D@40,107 i / C = O (dans CO@114 / 2@117 / )@114 /  = 1,32 · 10@107 / -18@104 / "
                  " J@107";
    QTest::newRow("8 options tab, heat")
        << 8 << 3 << true
        << head +
               "D@40,29 i / C – H@36 /  = 410 kJ · mol@29 / -1@26 / "
               "D@200,29 i / C – C@36 /  = 348 kJ · mol@29 / -1@26 / "
               "D@40,55 i / O = O@62 /  = 494 kJ · mol@55 / -1@52 / "
               "D@200,55 i / C – O@62 /  = 356 kJ · mol@55 / -1@52 / "
               "D@40,81 i / O – H@88 /  = 460 kJ · mol@81 / -1@78 / "
               "D@40,107 i / C = O (dans CO@114 / 2@117 / )@114 /  = 795 kJ · mol@107 / -1@104 / "
               "Q@90,131 b i 10 / r@134 b 10 /  = – 1 244@131 b 10 /  kJ · mol@131 b 10 / "
               "-1@128 b 8";
    QTest::newRow("4 micro, heat tail")
        << 4 << 1 << true
        << head +
               "D@40,29 i / C – H@36 /  = 0,681 · 10@29 / -18@26 /  J@29 / "
               "D@200,29 i / C – C@36 /  = 0,578 · 10@29 / -18@26 /  J@29 / "
               "D@40,55 i / O = O@62 /  = 0,821 · 10@55 / -18@52 /  J@55 / "
               "D@200,55 i / O – H@62 /  = 0,764 · 10@55 / -18@52 /  J@55 / "
               "D@40,81 i / C = O (dans CO@88 / 2@91 / )@88 /  = 1,32 · 10@81 / -18@78 /  J@81 / "
               "Q@90,131 b i 10 / r@134 b 10 /  = – 8,65@131 b 10 /  · 10@131 b 10 / "
               "-18@128 b 8 /  J@131 b 10";
}

void TestMicroCaptions::panelRuns() {
    QFETCH(int, reaction);
    QFETCH(int, tab);
    QFETCH(bool, heat);
    const chemistry::BondTotals t = chemistry::computeTotals(reaction);
    QTEST(describe(micro::dataPanelRuns(reaction, tab, heat, t.broken, t.formed)), "runs");
}

QTEST_GUILESS_MAIN(TestMicroCaptions)
#include "tst_microcaptions.moc"
