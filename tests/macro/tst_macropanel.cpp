#include "chemistry/catalogue.h"
#include "macro/macropanel.h"
#include "mainwindow/context.h"
#include "platform/surface.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <memory>

namespace {

const QColor Red(255, 0, 0);
const QColor Blue(0, 100, 200);
const QColor White(255, 255, 255);
const QColor Black(0, 0, 0);
const QColor Grey(128, 128, 128);
const QColor LightGrey(192, 192, 192);
const QColor Back(240, 235, 230);

// What the main window provides, built by hand: state, reaction list with its Tag, tab strip,
// the two system options.
struct Harness {
    AppState state;
    MainContext ctx{state};
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    MacroPanel* panel = nullptr;

    explicit Harness(int reaction = 1, bool open = true) {
        window->resize(470, 420);
        ctx.window = window.get();
        ctx.Combo1 = new QComboBox(window.get());
        ctx.Combo1->setObjectName(QStringLiteral("Combo1"));
        ctx.Onglets = new platform::Surface(window.get(), QStringLiteral("Onglets"));
        ctx.Onglets->setGeometry(0, 0, 460, 410);
        for (int i = 0; i < 2; ++i) {
            ctx.Option1[static_cast<std::size_t>(i)] = new QRadioButton(window.get());
            ctx.Option1[static_cast<std::size_t>(i)]->move(0, 412 + 0 * i);
        }
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

    void enterAmounts(const QString& a, const QString& b) {
        panel->text1(0)->setText(a);
        panel->Text1_LostFocus(0);
        panel->text1(1)->setText(b);
        panel->Text1_LostFocus(1);
    }

    void leave(int field) {
        QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
        QCoreApplication::sendEvent(panel->text1(field), &out);
    }

    QColor pictureAt(int x, int y) { return panel->picture4()->image().pixelColor(x, y); }
};

bool isInk(const QColor& c) {
    return c.red() < 110 && c.green() < 110 && c.blue() < 110;
}

// Rightmost inked column of the frame's drawing in a band, left of x; -1 if none.
int rightmostInk(const QImage& img, int top, int height, int beforeX) {
    for (int x = beforeX - 1; x >= 0; --x)
        for (int y = top; y < top + height; ++y)
            if (isInk(img.pixelColor(x, y)))
                return x;
    return -1;
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
    void designValues_data();
    void designValues();
    void controlsFitTheFrame();
    void balance_data();
    void balance();
    void totalsAsTheyStand();
    void amountEntry_data();
    void amountEntry();
    void keysThatTypeNothing();
    void graphButton();
    void animation_data();
    void animation();
    void finalStateSecondPass();
    void cooling_data();
    void cooling();
    void coolingStopsWhenSliderLeaves();
    void gaugePixels_data();
    void gaugePixels();
    void systemBackground_data();
    void systemBackground();
    void optionClickResets();
    void singleProductColumns_data();
    void singleProductColumns();
    void tableEquationColumns();
    void tableCaptionsAndTitle();
    void renderPngs();
};

void TestMacroPanel::designValues_data() {
    QTest::addColumn<QString>("object");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("expected");
    QTest::newRow("Text1_0") << "Text1_0" << QByteArray("text") << QVariant("1,0");
    QTest::newRow("Text1_1") << "Text1_1" << QByteArray("text") << QVariant("1,0");
    QTest::newRow("Text1_2") << "Text1_2" << QByteArray("text") << QVariant("0,0");
    QTest::newRow("Text1_3") << "Text1_3" << QByteArray("text") << QVariant("0,0");
    QTest::newRow("Label6") << "Label6" << QByteArray("text") << QVariant("0,0 kJ");
    QTest::newRow("HScroll1 min") << "HScroll1" << QByteArray("minimum") << QVariant(0);
    QTest::newRow("HScroll1 max") << "HScroll1" << QByteArray("maximum") << QVariant(10000);
    QTest::newRow("HScroll1 page") << "HScroll1" << QByteArray("pageStep") << QVariant(100);
    QTest::newRow("HScroll1 value") << "HScroll1" << QByteArray("value") << QVariant(0);
    QTest::newRow("Timer2 interval") << "Timer2" << QByteArray("interval") << QVariant(20);
    QTest::newRow("Timer2 off") << "Timer2" << QByteArray("active") << QVariant(false);
    QTest::newRow("Timer3 interval") << "Timer3" << QByteArray("interval") << QVariant(100);
    QTest::newRow("Timer3 off") << "Timer3" << QByteArray("active") << QVariant(false);
    QTest::newRow("Image8") << "Image8" << QByteArray("toolTip") << QVariant("État initial");
    QTest::newRow("Image9") << "Image9" << QByteArray("toolTip") << QVariant("État final");
    QTest::newRow("Image10") << "Image10" << QByteArray("toolTip") << QVariant("Pause");
    QTest::newRow("Image11") << "Image11" << QByteArray("toolTip") << QVariant("Animation");
    QTest::newRow("Command3") << "Command3" << QByteArray("text") << QVariant("Graphe");
    QTest::newRow("Command3 tip") << "Command3" << QByteArray("toolTip")
                                  << QVariant("Énergie libérée en fonction de l'avancement");
    QTest::newRow("Text1_0 place")
        << "Text1_0" << QByteArray("geometry") << QVariant(QRect(104, 44, 65, 21));
    QTest::newRow("Text1_1 place")
        << "Text1_1" << QByteArray("geometry") << QVariant(QRect(176, 44, 65, 21));
    QTest::newRow("Text1_2 place")
        << "Text1_2" << QByteArray("geometry") << QVariant(QRect(256, 44, 65, 21));
    QTest::newRow("Text1_3 place")
        << "Text1_3" << QByteArray("geometry") << QVariant(QRect(328, 44, 65, 21));
}

void TestMacroPanel::designValues() {
    QFETCH(QString, object);
    QFETCH(QByteArray, property);
    QFETCH(QVariant, expected);
    AppState state;
    MainContext ctx(state);
    QWidget window;
    ctx.Onglets = new platform::Surface(&window);
    auto* panel = new MacroPanel(ctx, &window);
    QObject* o = panel->findChild<QObject*>(object);
    if (!o)
        o = panel->frame2()->findChild<QObject*>(object);
    QVERIFY2(o, qPrintable(object));
    QCOMPARE(o->property(property.constData()), expected);
    QCOMPARE(panel->frame2()->parentWidget(), ctx.Onglets);
}

void TestMacroPanel::controlsFitTheFrame() {
    Harness h;
    const QRect frame(0, 0, 452, 386);
    QCOMPARE(h.panel->frame2()->size(), frame.size());
    const auto children = h.panel->frame2()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    QVERIFY(children.size() >= 17);
    for (QWidget* w : children)
        QVERIFY2(frame.contains(w->geometry()), qPrintable(w->objectName()));
    QCOMPARE(h.panel->picture4()->parentWidget(), h.panel->frame2());
}

void TestMacroPanel::balance_data() {
    QTest::addColumn<int>("reaction");
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<int>("slider");
    QTest::addColumn<bool>("open");
    QTest::addColumn<QStringList>("amounts");
    QTest::addColumn<QString>("advancement");
    QTest::addColumn<QString>("energy");
    QTest::addColumn<double>("xmax");
    QTest::addColumn<bool>("graph");

    QTest::newRow("methane 1/1 end, open")
        << 1 << "1"
        << "1" << 10000 << true << QStringList{"  0,5", "  0,0", "  0,5", "  1,0"} << "0,5 mol"
        << "-401,0 kJ" << 0.5 << true;
    QTest::newRow("methane 1/1 end, isolated")
        << 1 << "1"
        << "1" << 10000 << false << QStringList{"  0,5", "  0,0", "  0,5", "  1,0"} << "0,5 mol"
        << "0,0 kJ" << 0.5 << true;
    QTest::newRow("methane 1/1 start")
        << 1 << "1"
        << "1" << 0 << true << QStringList{"  1,0", "  1,0", "  0,0", "  0,0"} << "0,0 mol"
        << "0,0 kJ" << 0.5 << true;
    QTest::newRow("methane 1/1 half way")
        << 1 << "1"
        << "1" << 5000 << true << QStringList{"  0,75", "  0,5", "  0,25", "  0,5"} << "0,25 mol"
        << "-200,5 kJ" << 0.5 << true;
    QTest::newRow("methane 1/2 tie")
        << 1 << "1"
        << "2" << 10000 << true << QStringList{"  0,0", "  0,0", "  1,0", "  2,0"} << "1,0 mol"
        << "-802,0 kJ" << 1.0 << true;
    QTest::newRow("H2 in O2 2/1 tie")
        << 5 << "2"
        << "1" << 10000 << true << QStringList{"  0,0", "  0,0", "  2,0", "keep"} << "1,0 mol"
        << "-482,0 kJ" << 1.0 << true;
    QTest::newRow("H2 in Cl2 3/1")
        << 6 << "3"
        << "1" << 2500 << true << QStringList{"  2,75", "  0,75", "  0,5", "keep"} << "0,25 mol"
        << "-46,0 kJ" << 1.0 << true;
    QTest::newRow("no fuel") << 1 << "0"
                             << "1" << 10000 << true
                             << QStringList{"  0,0", "  1,0", "  0,0", "  0,0"} << "0,0 mol"
                             << "0,0 kJ" << 0.0 << false;
    QTest::newRow("no oxidant, isolated")
        << 3 << "4"
        << "abc" << 7000 << false << QStringList{"  4,0", "  0,0", "  0,0", "  0,0"} << "0,0 mol"
        << "0,0 kJ" << 0.0 << false;
    QTest::newRow("butane at the bounds")
        << 4 << "250000"
        << "100000" << 10000 << true
        << QStringList{" 84 615,385", "  0,0", " 61 538,462", " 76 923,077"} << "7 692,308 mol"
        << "-40 076 923,077 kJ" << 100000.0 / 13 << true;
    QTest::newRow("ethanol 2,5/3 a fifth")
        << 8 << "2,5"
        << "3" << 2000 << true << QStringList{"  2,3", "  2,4", "  0,4", "  0,6"} << "0,2 mol"
        << "-248,8 kJ" << 1.0 << true;
}

void TestMacroPanel::balance() {
    QFETCH(int, reaction);
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(int, slider);
    QFETCH(bool, open);
    QFETCH(QStringList, amounts);
    QFETCH(QString, advancement);
    QFETCH(QString, energy);
    QFETCH(double, xmax);
    QFETCH(bool, graph);

    Harness h(reaction, open);
    h.panel->label4(3)->setText(QStringLiteral("keep"));
    h.enterAmounts(a, b);
    h.panel->hscroll1()->setValue(slider);

    QCOMPARE(h.state.MaxAdvancement, xmax);
    QStringList shown;
    for (int i = 0; i < 4; ++i)
        shown << h.panel->label4(i)->text();
    QCOMPARE(shown, amounts);
    QCOMPARE(h.panel->label5()->text(), advancement);
    QCOMPARE(h.panel->label6()->text(), energy);
    QCOMPARE(h.panel->command3()->isEnabled(), graph);
}

void TestMacroPanel::totalsAsTheyStand() {
    // majqant reads the totals in the state as they are; an overflowing difference leaves the
    // energy label as it was while the other labels still follow.
    Harness h(1, true);
    h.panel->hscroll1()->setValue(10000);
    QCOMPARE(h.panel->label6()->text(), QStringLiteral("-401,0 kJ"));
    h.state.BrokenBondsEnergy = -30000;
    h.state.FormedBondsEnergy = 10000;
    h.panel->hscroll1()->setValue(5000);
    QCOMPARE(h.panel->label6()->text(), QStringLiteral("-401,0 kJ"));
    QCOMPARE(h.panel->label5()->text(), QStringLiteral("0,25 mol"));
    h.state.BrokenBondsEnergy = 100;
    h.state.FormedBondsEnergy = 40;
    h.panel->majqant();
    QCOMPARE(h.panel->label6()->text(), QStringLiteral("15,0 kJ"));
}

void TestMacroPanel::amountEntry_data() {
    QTest::addColumn<int>("field");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<bool>("byEnter");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("advancement");
    QTest::newRow("2.5 left by focus") << 0 << "2.5" << false << "2,5"
                                       << "  2,5"
                                       << "0,5 mol";
    QTest::newRow("2.5 by Enter") << 0 << "2.5" << true << "2,5"
                                  << "  2,5"
                                  << "0,5 mol";
    QTest::newRow("-3 clamped") << 0 << "-3" << false << "-3"
                                << "  0,0"
                                << "0,0 mol";
    QTest::newRow("250000 clamped") << 1 << "250000" << false << "250000"
                                    << " 100 000,0"
                                    << "1,0 mol";
    QTest::newRow("letters refused") << 1 << "1a2b" << false << "12"
                                     << "  12,0"
                                     << "1,0 mol";
    QTest::newRow("exponent refused") << 0 << "4e1" << true << "41"
                                      << "  41,0"
                                      << "0,5 mol";
    QTest::newRow("comma kept") << 1 << "0,5" << false << "0,5"
                                << "  0,5"
                                << "0,25 mol";
    QTest::newRow("nothing reads 0") << 1 << "" << false << ""
                                     << "  0,0"
                                     << "0,0 mol";
    QTest::newRow("two commas read 0") << 0 << "1,2,3" << false << "1,2,3"
                                       << "  0,0"
                                       << "0,0 mol";
    QTest::newRow("product field") << 2 << "7.25" << false << "7,25"
                                   << "  7,25"
                                   << "0,5 mol";
}

void TestMacroPanel::amountEntry() {
    QFETCH(int, field);
    QFETCH(QString, keys);
    QFETCH(bool, byEnter);
    QFETCH(QString, typed);
    QFETCH(QString, left);
    QFETCH(QString, advancement);

    Harness h(1, true);
    QLineEdit* f = h.panel->text1(field);
    f->clear();
    QTest::keyClicks(f, keys);
    QCOMPARE(f->text(), typed);
    h.panel->hscroll1()->setValue(10000);
    if (byEnter)
        QTest::keyClick(f, Qt::Key_Return);
    else
        h.leave(field);
    QCOMPARE(f->text(), left);
    QCOMPARE(h.panel->hscroll1()->value(), 0);
    // The balance was recomputed from the new amounts: show x_max at the end.
    h.panel->hscroll1()->setValue(10000);
    QCOMPARE(h.panel->label5()->text(), advancement);
}

void TestMacroPanel::keysThatTypeNothing() {
    Harness h(1, true);
    QLineEdit* f = h.panel->text1(0);
    f->setText(QStringLiteral("12"));
    QTest::keyClick(f, Qt::Key_Home);
    QTest::keyClick(f, Qt::Key_Right);
    QTest::keyClick(f, Qt::Key_Period);
    QCOMPARE(f->text(), QStringLiteral("1,2"));
    QTest::keyClick(f, Qt::Key_End);
    QTest::keyClick(f, Qt::Key_Backspace);
    QCOMPARE(f->text(), QStringLiteral("1,"));
    QGuiApplication::clipboard()->setText(QStringLiteral("99"));
    QTest::keyClick(f, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(f->text(), QStringLiteral("1,"));
    // Leaving the window is not leaving the field.
    QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(f, &away);
    QCOMPARE(f->text(), QStringLiteral("1,"));
}

void TestMacroPanel::graphButton() {
    Harness h(1, true);
    QSignalSpy spy(h.panel, &MacroPanel::graphRequested);
    QTest::mouseClick(h.panel->command3(), Qt::LeftButton);
    QCOMPARE(spy.count(), 1);
    h.enterAmounts(QStringLiteral("1"), QStringLiteral("0"));
    QVERIFY(!h.panel->command3()->isEnabled());
    QTest::mouseClick(h.panel->command3(), Qt::LeftButton);
    QCOMPARE(spy.count(), 1);
}

void TestMacroPanel::animation_data() {
    // Steps: "8", "9", "10", "11" click the image buttons, "tN" runs N ticks of Timer2.
    QTest::addColumn<QString>("steps");
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("running");
    QTest::addColumn<QString>("advancement");
    QTest::newRow("started") << "11" << 0 << true << "0,0 mol";
    QTest::newRow("one tick") << "11 t1" << 100 << true << "0,005 mol";
    QTest::newRow("99 ticks") << "11 t99" << 9900 << true << "0,495 mol";
    QTest::newRow("100 ticks end it") << "11 t100" << 10000 << false << "0,5 mol";
    QTest::newRow("pause") << "11 t30 10" << 3000 << false << "0,15 mol";
    QTest::newRow("pause then resume") << "11 t30 10 11 t1" << 3100 << true << "0,155 mol";
    QTest::newRow("restart at the end") << "11 t100 11" << 0 << true << "0,0 mol";
    QTest::newRow("final state then play") << "9 11 t2" << 200 << true << "0,01 mol";
    QTest::newRow("initial state stops") << "11 t10 8" << 0 << false << "0,0 mol";
    QTest::newRow("final state stops") << "11 t10 9" << 10000 << false << "0,5 mol";
    QTest::newRow("paused off the grid") << "s4321 11 t56" << 9921 << true << "0,496 mol";
    QTest::newRow("overshoot clamps") << "s4321 11 t57" << 10000 << false << "0,5 mol";
}

void TestMacroPanel::animation() {
    QFETCH(QString, steps);
    QFETCH(int, value);
    QFETCH(bool, running);
    QFETCH(QString, advancement);

    Harness h(1, true);
    h.enterAmounts(QStringLiteral("1"), QStringLiteral("1"));
    for (const QString& step : steps.split(QLatin1Char(' '))) {
        if (step == QLatin1String("8"))
            QTest::mouseClick(h.window->findChild<QWidget*>(QStringLiteral("Image8")),
                              Qt::LeftButton);
        else if (step == QLatin1String("9"))
            h.panel->Image9_Click();
        else if (step == QLatin1String("10"))
            QTest::mouseClick(h.window->findChild<QWidget*>(QStringLiteral("Image10")),
                              Qt::LeftButton);
        else if (step == QLatin1String("11"))
            QTest::mouseClick(h.window->findChild<QWidget*>(QStringLiteral("Image11")),
                              Qt::LeftButton);
        else if (step.startsWith(QLatin1Char('s')))
            h.panel->hscroll1()->setValue(step.mid(1).toInt());
        else
            for (int i = step.mid(1).toInt(); i > 0; --i)
                h.panel->Timer2_Timer();
    }
    QCOMPARE(h.panel->hscroll1()->value(), value);
    QCOMPARE(h.panel->timer2()->isActive(), running);
    QCOMPARE(h.panel->label5()->text(), advancement);
}

void TestMacroPanel::finalStateSecondPass() {
    Harness h(1, true);
    // Something handled while Image9 lets events run moves the slider back; the second pass
    // still leaves the final state on display.
    QTimer::singleShot(0, h.panel, [&h] { h.panel->hscroll1()->setValue(1234); });
    h.panel->Image9_Click();
    QCOMPARE(h.panel->hscroll1()->value(), 10000);
    QCOMPARE(h.panel->label5()->text(), QStringLiteral("0,5 mol"));
    QCOMPARE(h.panel->label6()->text(), QStringLiteral("-401,0 kJ"));
    QCOMPARE(h.state.CoolingCounter, std::int16_t(10000));
    QVERIFY(h.panel->timer3()->isActive());
    QVERIFY(h.panel->picture4()->hasFocus() || !h.window->isActiveWindow());
}

void TestMacroPanel::cooling_data() {
    QTest::addColumn<bool>("open");
    QTest::addColumn<int>("ticks");
    QTest::addColumn<int>("counter");
    QTest::addColumn<bool>("running");
    QTest::newRow("isolated never cools") << false << 0 << 0 << false;
    QTest::newRow("open starts") << true << 0 << 10000 << true;
    QTest::newRow("first tick") << true << 1 << 9900 << true;
    QTest::newRow("half way") << true << 50 << 5000 << true;
    QTest::newRow("last drawing tick") << true << 100 << 0 << true;
    QTest::newRow("then stops") << true << 101 << 0 << false;
}

void TestMacroPanel::cooling() {
    QFETCH(bool, open);
    QFETCH(int, ticks);
    QFETCH(int, counter);
    QFETCH(bool, running);
    Harness h(1, open);
    h.panel->Image9_Click();
    for (int i = 0; i < ticks; ++i)
        h.panel->Timer3_Timer();
    QCOMPARE(int(h.state.CoolingCounter), counter);
    QCOMPARE(h.panel->timer3()->isActive(), running);
}

void TestMacroPanel::coolingStopsWhenSliderLeaves() {
    Harness h(1, true);
    h.panel->Image9_Click();
    for (int i = 0; i < 10; ++i)
        h.panel->Timer3_Timer();
    QCOMPARE(int(h.state.CoolingCounter), 9000);
    h.panel->hscroll1()->setValue(9000);
    QVERIFY(h.panel->timer3()->isActive());
    h.panel->Timer3_Timer();
    QVERIFY(!h.panel->timer3()->isActive());
    QCOMPARE(int(h.state.CoolingCounter), 9000);
    // The open gauges at 9000 stay: the stopping tick draws nothing.
    QCOMPARE(h.pictureAt(138, 64), Red); // 105 - 9000/210 = 62.1
    h.panel->hscroll1()->setValue(10000);
    QCOMPARE(int(h.state.CoolingCounter), 10000);
    QVERIFY(h.panel->timer3()->isActive());
}

void TestMacroPanel::gaugePixels_data() {
    QTest::addColumn<bool>("open");
    QTest::addColumn<int>("slider");
    QTest::addColumn<int>("coolingTicks");
    QTest::addColumn<QList<QPoint>>("points");
    QTest::addColumn<QList<QColor>>("colours");
    // Each gauge is probed just inside and just outside its top.
    const QList<QColor> pattern{Red, White, Blue, White, Red, White, Blue, White};
    QTest::newRow("open, start") << true << 0 << 0
                                 << QList<QPoint>{{138, 108}, {138, 102}, {70, 141},  {70, 135},
                                                  {338, 108}, {338, 102}, {270, 101}, {270, 95}}
                                 << pattern;
    QTest::newRow("open, end") << true << 10000 << 0
                               << QList<QPoint>{{138, 60},  {138, 54},  {70, 174}, {70, 168},
                                                {338, 108}, {338, 102}, {270, 68}, {270, 62}}
                               << pattern;
    QTest::newRow("isolated, start")
        << false << 0 << 0 << QList<QPoint>{{138, 108}, {138, 102}, {70, 141},  {70, 135},
                                            {338, 138}, {338, 132}, {270, 101}, {270, 95}}
        << pattern;
    QTest::newRow("isolated, end")
        << false << 10000 << 0 << QList<QPoint>{{138, 37},  {138, 31},  {70, 141},  {70, 135},
                                                {338, 138}, {338, 132}, {270, 101}, {270, 95}}
        << pattern;
    QTest::newRow("isolated, 7000")
        << false << 7000 << 0 << QList<QPoint>{{138, 55},  {138, 54},  {70, 138}, {70, 137},
                                               {338, 135}, {338, 134}, {270, 98}, {270, 97}}
        << QList<QColor>{Red, White, Black, White, Red, White, Black, White};
    QTest::newRow("cooling, half way")
        << true << 10000 << 50 << QList<QPoint>{{138, 84},  {138, 78},  {70, 184}, {70, 178},
                                                {338, 108}, {338, 102}, {270, 58}, {270, 52}}
        << pattern;
    QTest::newRow("cooled down") << true << 10000 << 100
                                 << QList<QPoint>{{138, 108}, {138, 102}, {70, 194}, {70, 188},
                                                  {338, 108}, {338, 102}, {270, 48}, {270, 42}}
                                 << pattern;
}

void TestMacroPanel::gaugePixels() {
    QFETCH(bool, open);
    QFETCH(int, slider);
    QFETCH(int, coolingTicks);
    QFETCH(QList<QPoint>, points);
    QFETCH(QList<QColor>, colours);
    Harness h(1, open);
    h.panel->hscroll1()->setValue(slider);
    for (int i = 0; i < coolingTicks; ++i)
        h.panel->Timer3_Timer();
    const QImage img = h.panel->picture4()->image();
    for (qsizetype i = 0; i < points.size(); ++i)
        QVERIFY2(img.pixelColor(points[i]) == colours[i],
                 qPrintable(QStringLiteral("(%1, %2) is %3")
                                .arg(points[i].x())
                                .arg(points[i].y())
                                .arg(img.pixelColor(points[i]).name())));
    // The initial level marks stay across every gauge.
    QCOMPARE(img.pixelColor(54, 138), Black);
    QCOMPARE(img.pixelColor(254, 98), Black);
}

void TestMacroPanel::systemBackground_data() {
    QTest::addColumn<bool>("open");
    QTest::addColumn<QList<QPoint>>("points");
    QTest::addColumn<QList<QColor>>("colours");
    // The wall's right edge, the surroundings' marks at 106 and 136 (136 is a graduation in
    // the open system), the system's mark, a graduation, the bulb stub.
    const QList<QPoint> probes{{234, 134}, {333, 106}, {333, 136}, {133, 106},
                               {133, 109}, {138, 210}, {337, 210}};
    QTest::newRow("open") << true << probes << QList<QColor>{Back,  Black,     LightGrey,
                                                             Black, LightGrey, QColor(200, 0, 0),
                                                             Red};
    QTest::newRow("isolated") << false << probes
                              << QList<QColor>{Black,     LightGrey,         Black, Black,
                                               LightGrey, QColor(200, 0, 0), Red};
}

void TestMacroPanel::systemBackground() {
    QFETCH(bool, open);
    QFETCH(QList<QPoint>, points);
    QFETCH(QList<QColor>, colours);
    Harness h(1, !open);
    h.setSystem(open); // redrawn from the other kind, so nothing of it may remain
    const QImage img = h.panel->picture4()->image();
    for (qsizetype i = 0; i < points.size(); ++i)
        QVERIFY2(img.pixelColor(points[i]) == colours[i],
                 qPrintable(QStringLiteral("(%1, %2) is %3")
                                .arg(points[i].x())
                                .arg(points[i].y())
                                .arg(img.pixelColor(points[i]).name())));
    // The ball: orange at the rim, pale yellow at the highlight.
    QCOMPARE(img.pixelColor(228, 134), QColor(255, 115, 60));
    QCOMPARE(img.pixelColor(37, 82), QColor(255, 245, 190));
}

void TestMacroPanel::optionClickResets() {
    Harness h(1, true);
    h.panel->hscroll1()->setValue(4000);
    QCOMPARE(h.panel->label6()->text(), QStringLiteral("-160,4 kJ"));
    h.setSystem(false);
    QCOMPARE(h.panel->hscroll1()->value(), 0);
    QCOMPARE(h.panel->label6()->text(), QStringLiteral("0,0 kJ"));
    QCOMPARE(h.pictureAt(234, 134), Black);
    h.panel->hscroll1()->setValue(4000);
    QCOMPARE(h.panel->label6()->text(), QStringLiteral("0,0 kJ"));
    h.setSystem(true);
    QCOMPARE(h.panel->hscroll1()->value(), 0);
    QCOMPARE(h.pictureAt(234, 134), Back);
}

void TestMacroPanel::singleProductColumns_data() {
    QTest::addColumn<int>("reaction");
    QTest::addColumn<bool>("hidden");
    for (int r = 1; r <= 8; ++r)
        QTest::addRow("reaction %d", r) << r << (r == 5 || r == 6);
}

void TestMacroPanel::singleProductColumns() {
    QFETCH(int, reaction);
    QFETCH(bool, hidden);
    Harness h(1, true);
    h.panel->hscroll1()->setValue(10000);
    QCOMPARE(h.panel->label4(3)->text(), QStringLiteral("  1,0"));
    h.select(reaction);
    QCOMPARE(h.panel->text1(3)->isHidden(), hidden);
    QCOMPARE(h.panel->label4(3)->isHidden(), hidden);
    if (hidden)
        QCOMPARE(h.panel->label4(3)->text(), QStringLiteral("  1,0"));
    h.select(1);
    QVERIFY(!h.panel->text1(3)->isHidden());
}

void TestMacroPanel::tableEquationColumns() {
    Harness h(1, true);
    QImage img = h.panel->frame2()->image();
    // One species over each field, "+" in the gap before the last one.
    const QList<int> lefts{104, 176, 256, 328};
    for (int left : lefts)
        QVERIFY2(inkCount(img, QRect(left, 16, 65, 22)) > 40, qPrintable(QString::number(left)));
    QVERIFY(inkCount(img, QRect(322, 18, 6, 16)) > 3);
    // The arrow sits in the gap between the sides.
    QVERIFY(inkCount(img, QRect(242, 18, 14, 16)) > 5);

    h.select(6); // H2 + Cl2 -> 2 HCl: three species
    img = h.panel->frame2()->image();
    QCOMPARE(inkCount(img, QRect(322, 10, 130, 30)), 0);
    QVERIFY(inkCount(img, QRect(256, 16, 65, 22)) > 40);
}

void TestMacroPanel::tableCaptionsAndTitle() {
    Harness h(4, true);
    const QImage img = h.panel->frame2()->image();
    // Each caption ends where its control begins: the last ink stands within a few pixels.
    const QList<QWidget*> controls{h.panel->text1(0), h.panel->label4(0), h.panel->label5(),
                                   h.panel->label6()};
    const QList<int> slack{8, 8, 8, 14}; // trailing blank; the delta is narrower than "X "
    for (qsizetype i = 0; i < controls.size(); ++i) {
        const QWidget* c = controls[i];
        const int last = rightmostInk(img, c->y(), 13, c->x());
        QVERIFY2(last < c->x() && last >= c->x() - slack[i],
                 qPrintable(QStringLiteral("%1 ends at %2").arg(c->objectName()).arg(last)));
    }
    // Etched line from 10 to width - 10 (last point left out), broken by the title box.
    QCOMPARE(img.pixelColor(10, 81), Grey);
    QCOMPARE(img.pixelColor(10, 82), White);
    QCOMPARE(img.pixelColor(441, 81), Grey);
    QCOMPARE(img.pixelColor(441, 82), White);
    QCOMPARE(img.pixelColor(442, 81), Back);
    QCOMPARE(img.pixelColor(9, 82), Back);
    int gapStart = 10;
    while (gapStart < 442 && img.pixelColor(gapStart, 81) == Grey)
        ++gapStart;
    int gapEnd = 441;
    while (gapEnd > 10 && img.pixelColor(gapEnd, 81) == Grey)
        --gapEnd;
    QVERIFY2(gapStart > 120 && gapEnd < 332 && gapEnd - gapStart > 100,
             qPrintable(QStringLiteral("%1..%2").arg(gapStart).arg(gapEnd)));
    QVERIFY(qAbs((gapStart + gapEnd) - 452) <= 2); // centred
    QCOMPARE(img.pixelColor(gapStart, 82), Back);
}

void TestMacroPanel::renderPngs() {
    // Pictures of the tab for looking at, written only when a folder is given.
    const QString dir = qEnvironmentVariable("THERMIVO_MACRO_PNG_DIR");
    if (dir.isEmpty())
        QSKIP("THERMIVO_MACRO_PNG_DIR not set");
    for (int r : {1, 4, 5, 7}) {
        for (bool open : {true, false}) {
            Harness h(r, open);
            h.enterAmounts(QStringLiteral("2,5"), QStringLiteral("100"));
            h.panel->hscroll1()->setValue(6000);
            const QString file = QDir(dir).filePath(
                QStringLiteral("macro_r%1_%2.png").arg(r).arg(open ? "open" : "isolated"));
            QVERIFY(h.panel->frame2()->grab().save(file));
        }
    }
}

QTEST_MAIN(TestMacroPanel)
#include "tst_macropanel.moc"
