#include "chemistry/catalogue.h"
#include "macro/macropanel.h"
#include "mainwindow/context.h"
#include "platform/surface.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <memory>

namespace {

const QColor Back(240, 235, 230);

// What the main window provides, built by hand: the state, the reaction list with its Tag,
// the tab strip and the two system options.
struct Harness {
    AppState state;
    MainContext ctx{state};
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    MacroPanel* panel = nullptr;

    explicit Harness(int reaction = 1, bool open = true) {
        ctx.window = window.get();
        ctx.Combo1 = new QComboBox(window.get());
        ctx.Onglets = new platform::Surface(window.get(), QStringLiteral("Onglets"));
        ctx.Onglets->setGeometry(0, 0, 460, 410);
        ctx.Option1[0] = new QRadioButton(window.get());
        ctx.Option1[1] = new QRadioButton(window.get());
        ctx.Option1[open ? 1 : 0]->setChecked(true);
        panel = new MacroPanel(ctx, window.get());
        panel->frame2()->setGeometry(4, 20, 452, 386);
        window->show();
        panel->prepapic4();
        select(reaction);
    }
    // The reaction change as the main window runs it: slider to 0, majqant, then the totals.
    void select(int reaction) {
        ctx.Combo1->setProperty("Tag", QString::number(reaction));
        panel->hscroll1()->setValue(0);
        panel->majqant();
        const chemistry::BondTotals t = chemistry::computeTotals(reaction);
        state.BrokenBondsEnergy = t.broken;
        state.FormedBondsEnergy = t.formed;
        panel->frame2()->refresh();
    }
    void setSystem(bool open) {
        ctx.Option1[open ? 1 : 0]->setChecked(true);
        panel->Option1_Click(open ? 1 : 0);
    }
    void click(const char* name) {
        QTest::mouseClick(panel->frame2()->findChild<QWidget*>(QLatin1String(name)),
                          Qt::LeftButton);
    }
};

// "x,y c" probes separated by blanks; c: r red, w white, b blue, k black, g light grey,
// G grey, d dark red, o orange rim and p pale highlight of the ball, B background.
void checkPixels(const QImage& img, const QString& probes) {
    const QMap<QChar, QColor> colours{{'r', QColor(255, 0, 0)},     {'w', QColor(255, 255, 255)},
                                      {'b', QColor(0, 100, 200)},   {'k', QColor(0, 0, 0)},
                                      {'g', QColor(192, 192, 192)}, {'G', QColor(128, 128, 128)},
                                      {'d', QColor(200, 0, 0)},     {'o', QColor(255, 115, 60)},
                                      {'p', QColor(255, 245, 190)}, {'B', Back}};
    const QStringList parts = probes.split(QLatin1Char(' '));
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QStringList xy = parts[i].split(QLatin1Char(','));
        const QColor got = img.pixelColor(xy[0].toInt(), xy[1].toInt());
        QVERIFY2(got == colours.value(parts[i + 1].at(0)),
                 qPrintable(parts[i] + QStringLiteral(" is ") + got.name()));
    }
}

bool isInk(const QColor& c) {
    return c.red() < 110 && c.green() < 110 && c.blue() < 110;
}

int inkCount(const QImage& img, const QRect& r) {
    int n = 0;
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x)
            n += isInk(img.pixelColor(x, y)) ? 1 : 0;
    return n;
}

} // namespace

class TestMacroPanel : public QObject {
    Q_OBJECT
private slots:
    void layoutFitsTheTab();
    void balance_data();
    void balance();
    void amountEntry_data();
    void amountEntry();
    void sequences_data();
    void sequences();
    void finalStateSecondPass();
    void gauges_data();
    void gauges();
    void optionsAndColumns();
    void tablePaint();
};

void TestMacroPanel::layoutFitsTheTab() {
    Harness h;
    for (int i = 0; i < 4; ++i) // the design positions, in twips / 15
        QCOMPARE(h.panel->text1(i)->geometry(), QRect(QList{104, 176, 256, 328}[i], 44, 65, 21));
    for (QWidget* w : h.panel->frame2()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        QVERIFY2(QRect(0, 0, 452, 386).contains(w->geometry()), qPrintable(w->objectName()));
}

void TestMacroPanel::balance_data() {
    QTest::addColumn<QString>("input"); // reaction, amounts, slider, o(pen) or i(solated)
    QTest::addColumn<QString>("amounts");
    QTest::addColumn<QString>("x");
    QTest::addColumn<QString>("energy");
    QTest::addColumn<bool>("graph");
    const char* rows[][5] = {
        {"1 1 1 10000 o", "  0,5|  0,0|  0,5|  1,0", "0,5 mol", "-401,0 kJ", "y"},
        {"1 1 1 10000 i", "  0,5|  0,0|  0,5|  1,0", "0,5 mol", "0,0 kJ", "y"},
        {"1 1 1 0 o", "  1,0|  1,0|  0,0|  0,0", "0,0 mol", "0,0 kJ", "y"},
        {"1 1 1 5000 o", "  0,75|  0,5|  0,25|  0,5", "0,25 mol", "-200,5 kJ", "y"},
        {"1 1 2 10000 o", "  0,0|  0,0|  1,0|  2,0", "1,0 mol", "-802,0 kJ", "y"},
        {"5 2 1 10000 o", "  0,0|  0,0|  2,0|keep", "1,0 mol", "-482,0 kJ", "y"},
        {"6 3 1 2500 o", "  2,75|  0,75|  0,5|keep", "0,25 mol", "-46,0 kJ", "y"},
        {"1 0 1 10000 o", "  0,0|  1,0|  0,0|  0,0", "0,0 mol", "0,0 kJ", "n"},
        {"3 4 abc 7000 i", "  4,0|  0,0|  0,0|  0,0", "0,0 mol", "0,0 kJ", "n"},
        {"4 250000 100000 10000 o", " 84 615,385|  0,0| 61 538,462| 76 923,077", "7 692,308 mol",
         "-40 076 923,077 kJ", "y"},
        {"8 2,5 3 2000 o", "  2,3|  2,4|  0,4|  0,6", "0,2 mol", "-248,8 kJ", "y"},
    };
    for (const auto& r : rows)
        QTest::newRow(r[0]) << r[0] << r[1] << r[2] << r[3] << (r[4][0] == 'y');
}

void TestMacroPanel::balance() {
    QFETCH(QString, input);
    QFETCH(QString, amounts);
    QFETCH(QString, x);
    QFETCH(QString, energy);
    QFETCH(bool, graph);
    const QStringList in = input.split(QLatin1Char(' '));
    Harness h(in[0].toInt(), in[4] == QLatin1String("o"));
    h.panel->label4(3)->setText(QStringLiteral("keep"));
    for (int i = 0; i < 2; ++i) {
        h.panel->text1(i)->setText(in[1 + i]);
        h.panel->Text1_LostFocus(i);
    }
    h.panel->hscroll1()->setValue(in[3].toInt());
    QStringList shown;
    for (int i = 0; i < 4; ++i)
        shown << h.panel->label4(i)->text();
    QCOMPARE(shown.join(QLatin1Char('|')), amounts);
    QCOMPARE(h.panel->label5()->text(), x);
    QCOMPARE(h.panel->label6()->text(), energy);
    QCOMPARE(h.panel->command3()->isEnabled(), graph);
    // The totals are read as they stand; a difference past 16 bits keeps the energy label.
    h.state.BrokenBondsEnergy = -30000;
    h.state.FormedBondsEnergy = 10000;
    h.panel->majqant();
    QCOMPARE(h.panel->label6()->text(), energy);
}

void TestMacroPanel::amountEntry_data() {
    // Field, keys typed, left by Enter, text while typing, text once left, x at the end.
    for (const char* c : {"field", "keys", "enter", "typed", "left", "xmax"})
        QTest::addColumn<QString>(c);
    const char* rows[][6] = {
        {"0", "2.5", "", "2,5", "  2,5", "0,5 mol"},
        {"0", "2.5", "y", "2,5", "  2,5", "0,5 mol"},
        {"0", "-3", "", "-3", "  0,0", "0,0 mol"},
        {"1", "250000", "", "250000", " 100 000,0", "1,0 mol"},
        {"1", "1a2b", "", "12", "  12,0", "1,0 mol"},
        {"0", "4e1", "y", "41", "  41,0", "0,5 mol"},
        {"0", "1,2,3", "", "1,2,3", "  0,0", "0,0 mol"},
        {"2", "7.25", "", "7,25", "  7,25", "0,5 mol"},
    };
    for (const auto& r : rows)
        QTest::addRow("%s %s", r[1], r[2]) << r[0] << r[1] << r[2] << r[3] << r[4] << r[5];
}

void TestMacroPanel::amountEntry() {
    QFETCH(QString, field);
    QFETCH(QString, keys);
    QFETCH(QString, enter);
    QFETCH(QString, typed);
    QFETCH(QString, left);
    QFETCH(QString, xmax);
    Harness h;
    QLineEdit* f = h.panel->text1(field.toInt());
    f->clear();
    QTest::keyClicks(f, keys);
    QCOMPARE(f->text(), typed);
    QGuiApplication::clipboard()->setText(QStringLiteral("99"));
    QTest::keyClick(f, Qt::Key_V, Qt::ControlModifier); // refused like any other control key
    QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(f, &away); // another window is not another field
    QCOMPARE(f->text(), typed);

    h.panel->hscroll1()->setValue(10000);
    if (!enter.isEmpty()) {
        QTest::keyClick(f, Qt::Key_Return);
    } else {
        QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
        QCoreApplication::sendEvent(f, &out);
    }
    QCOMPARE(f->text(), left);
    QCOMPARE(h.panel->hscroll1()->value(), 0);
    h.panel->hscroll1()->setValue(10000);
    QCOMPARE(h.panel->label5()->text(), xmax);
}

void TestMacroPanel::sequences_data() {
    // Steps: 8..11 click the image buttons, tN / cN run N ticks of Timer2 / Timer3, sN sets
    // the slider, "iso" selects the isolated system. Methane, 1,0 mol of each reactant.
    QTest::addColumn<QString>("steps");
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("running");
    QTest::addColumn<QString>("x");
    QTest::addColumn<int>("counter");
    QTest::addColumn<bool>("cooling");
    QTest::newRow("one tick") << "11 t1" << 100 << true << "0,005 mol" << 0 << false;
    QTest::newRow("100 ticks") << "11 t100" << 10000 << false << "0,5 mol" << 10000 << true;
    QTest::newRow("pause") << "11 t30 10" << 3000 << false << "0,15 mol" << 0 << false;
    QTest::newRow("resume") << "11 t30 10 11 t1" << 3100 << true << "0,155 mol" << 0 << false;
    QTest::newRow("replay") << "11 t100 11" << 0 << true << "0,0 mol" << 10000 << true;
    QTest::newRow("final") << "11 t10 9" << 10000 << false << "0,5 mol" << 10000 << true;
    QTest::newRow("overshoot") << "s4321 11 t57" << 10000 << false << "0,5 mol" << 10000 << true;
    QTest::newRow("cool 100") << "9 c100" << 10000 << false << "0,5 mol" << 0 << true;
    QTest::newRow("cool 101") << "9 c101" << 10000 << false << "0,5 mol" << 0 << false;
    QTest::newRow("isolated") << "iso 9 c1" << 10000 << false << "0,5 mol" << 0 << false;
    QTest::newRow("leave end") << "9 c10 s9000 c1" << 9000 << false << "0,45 mol" << 9000 << false;
    QTest::newRow("back to end") << "9 c10 s9000 c1 s10000" << 10000 << false << "0,5 mol" << 10000
                                 << true;
}

void TestMacroPanel::sequences() {
    QFETCH(QString, steps);
    QFETCH(int, value);
    QFETCH(bool, running);
    QFETCH(QString, x);
    QFETCH(int, counter);
    QFETCH(bool, cooling);
    Harness h;
    for (const QString& step : steps.split(QLatin1Char(' '))) {
        const int n = step.mid(1).toInt();
        if (step == QLatin1String("iso"))
            h.setSystem(false);
        else if (step.startsWith(QLatin1Char('s')))
            h.panel->hscroll1()->setValue(n);
        else if (step.startsWith(QLatin1Char('t')))
            for (int i = 0; i < n; ++i)
                h.panel->Timer2_Timer();
        else if (step.startsWith(QLatin1Char('c')))
            for (int i = 0; i < n; ++i)
                h.panel->Timer3_Timer();
        else
            h.click(qPrintable(QStringLiteral("Image") + step));
    }
    QCOMPARE(h.panel->hscroll1()->value(), value);
    QCOMPARE(h.panel->timer2()->isActive(), running);
    QCOMPARE(h.panel->label5()->text(), x);
    QCOMPARE(int(h.state.CoolingCounter), counter);
    QCOMPARE(h.panel->timer3()->isActive(), cooling);
}

void TestMacroPanel::finalStateSecondPass() {
    Harness h;
    // Whatever runs while "État final" lets events through, the final state is drawn last.
    QTimer::singleShot(0, h.panel, [&h] { h.panel->hscroll1()->setValue(1234); });
    h.panel->Image9_Click();
    QCOMPARE(h.panel->hscroll1()->value(), 10000);
    QCOMPARE(h.panel->label6()->text(), QStringLiteral("-401,0 kJ"));
}

void TestMacroPanel::gauges_data() {
    // Each gauge is probed just inside and just outside its top: system thermometer, system
    // bar, surroundings thermometer, surroundings bar; then the two initial level marks.
    QTest::addColumn<bool>("open");
    QTest::addColumn<int>("slider");
    QTest::addColumn<int>("coolingTicks");
    QTest::addColumn<QString>("probes");
    const QString marks = QStringLiteral(" 54,138 k 254,98 k");
    QTest::newRow("open end") << true << 10000 << 0
                              << "138,60 r 138,54 w 70,174 b 70,168 w 338,108 r 338,102 w "
                                 "270,68 b 270,62 w" +
                                     marks;
    QTest::newRow("isolated 7000") << false << 7000 << 0
                                   << "138,55 r 138,54 w 70,138 k 70,137 w 338,135 r 338,134 w "
                                      "270,98 k 270,97 w" +
                                          marks;
    QTest::newRow("isolated end") << false << 10000 << 0
                                  << "138,37 r 138,31 w 70,141 b 70,135 w 338,138 r 338,132 w "
                                     "270,101 b 270,95 w" +
                                         marks;
    QTest::newRow("cooling 50") << true << 10000 << 50
                                << "138,84 r 138,78 w 70,184 b 70,178 w 338,108 r 338,102 w "
                                   "270,58 b 270,52 w" +
                                       marks;
    // Background: wall edge, surroundings marks at 106 / 136 (136 and 109 are graduations),
    // system mark, bulb stub, ball rim and highlight.
    const QString ground = QStringLiteral("333,106 %1 333,136 %2 133,106 k 133,109 g 138,210 d "
                                          "337,210 r 228,134 %3 37,82 %4");
    QTest::newRow("open ground") << true << 0 << 0 << ground.arg("k", "g", "o", "p") + " 234,134 B";
    QTest::newRow("isolated ground")
        << false << 0 << 0 << ground.arg("g", "k", "o", "p") + " 234,134 k";
}

void TestMacroPanel::gauges() {
    QFETCH(bool, open);
    QFETCH(int, slider);
    QFETCH(int, coolingTicks);
    QFETCH(QString, probes);
    Harness h(1, !open);
    h.setSystem(open); // redrawn over the other kind: nothing of it may remain
    h.panel->hscroll1()->setValue(slider);
    for (int i = 0; i < coolingTicks; ++i)
        h.panel->Timer3_Timer();
    checkPixels(h.panel->picture4()->image(), probes);
}

void TestMacroPanel::optionsAndColumns() {
    Harness h;
    h.panel->hscroll1()->setValue(10000);
    QCOMPARE(h.panel->label4(3)->text(), QStringLiteral("  1,0"));
    h.panel->hscroll1()->setValue(4000);
    h.setSystem(false);
    QCOMPARE(h.panel->hscroll1()->value(), 0);
    QCOMPARE(h.panel->label6()->text(), QStringLiteral("0,0 kJ"));
    for (int r = 1; r <= 8; ++r) {
        h.select(r);
        const bool single = r == 5 || r == 6;
        QCOMPARE(h.panel->text1(3)->isHidden(), single);
        QCOMPARE(h.panel->label4(3)->isHidden(), single);
    }
    QCOMPARE(h.panel->label4(3)->text(), QStringLiteral("  0,0")); // reaction 8 wrote it
}

void TestMacroPanel::tablePaint() {
    Harness h(1, true);
    QImage img = h.panel->frame2()->image();
    for (int left : {104, 176, 256, 328}) // one species over each field
        QVERIFY2(inkCount(img, QRect(left, 16, 65, 22)) > 40, qPrintable(QString::number(left)));
    QVERIFY(inkCount(img, QRect(322, 18, 6, 16)) > 3);  // "+" between the products
    QVERIFY(inkCount(img, QRect(242, 18, 14, 16)) > 5); // the arrow between the sides
    h.select(6);                                        // H2 + Cl2 -> 2 HCl
    img = h.panel->frame2()->image();
    QCOMPARE(inkCount(img, QRect(322, 10, 130, 30)), 0);

    // Each caption ends where its control begins (its trailing blank, or the narrower delta).
    const QList<QWidget*> controls{h.panel->text1(0), h.panel->label4(0), h.panel->label5(),
                                   h.panel->label6()};
    for (QWidget* c : controls) {
        int last = c->x() - 1;
        while (last >= 0 && inkCount(img, QRect(last, c->y(), 1, 13)) == 0)
            --last;
        QVERIFY2(last >= c->x() - (c == h.panel->label6() ? 14 : 8),
                 qPrintable(c->objectName() + QString::number(last)));
    }
    // Etched line from 10 to width - 10 (last point left out), broken by the centred title.
    checkPixels(img, QStringLiteral("10,81 G 10,82 w 441,81 G 441,82 w 442,81 B 9,82 B"));
    int from = 10, to = 441;
    while (img.pixelColor(from, 81) == QColor(128, 128, 128))
        ++from;
    while (img.pixelColor(to, 81) == QColor(128, 128, 128))
        --to;
    QVERIFY2(from > 120 && to < 332 && qAbs(from + to - 452) <= 2,
             qPrintable(QStringLiteral("%1..%2").arg(from).arg(to)));
}

QTEST_MAIN(TestMacroPanel)
#include "tst_macropanel.moc"
