#include "chemistry/catalogue.h"
#include "macro/macropanel.h"
#include "mainwindow/context.h"
#include "platform/surface.h"
#include "support/pixelprobes.h"
#include "support/standinwindow.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <memory>

namespace {

// What the main window provides, built by hand: the state, the reaction list with its Tag,
// the tab strip and the two system options.
struct Harness : StandInWindow {
    MacroPanel* panel = nullptr;

    explicit Harness(bool open = true) : StandInWindow(1, open) {
        panel = new MacroPanel(ctx, window.get());
        panel->frame2()->setGeometry(4, 20, 452, 386);
        window->show();
        panel->prepapic4();
        select(1);
    }
    // The reaction change as the main window runs it: slider to 0, majqant, then the totals.
    void select(int reaction) {
        ctx.Combo1->setProperty("Tag", QString::number(reaction));
        panel->hscroll1()->setValue(0);
        panel->majqant();
        setReaction(reaction);
        panel->frame2()->refresh();
    }
    void setSystem(bool open) {
        ctx.Option1[open ? 1 : 0]->setChecked(true);
        panel->Option1_Click(open ? 1 : 0);
    }
};

// "x,y c" probes separated by blanks; c: r red, w white, b blue, k black, g light grey,
// G grey, d dark red, o orange rim and p pale highlight of the ball, B background.
void checkPixels(const QImage& img, const QString& probes) {
    const QMap<QChar, QColor> colours{{'r', QColor(255, 0, 0)},     {'w', QColor(255, 255, 255)},
                                      {'b', QColor(0, 100, 200)},   {'k', QColor(0, 0, 0)},
                                      {'g', QColor(192, 192, 192)}, {'G', QColor(128, 128, 128)},
                                      {'d', QColor(200, 0, 0)},     {'o', QColor(255, 115, 60)},
                                      {'p', QColor(255, 245, 190)}, {'B', QColor(240, 235, 230)}};
    checkProbes(img, probes, colours);
}

// Dark pixels, the ink of the table's texts.
int inkCount(const QImage& img, const QRect& r) {
    int n = 0;
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x)
            n += qMax(qMax(img.pixelColor(x, y).red(), img.pixelColor(x, y).green()),
                      img.pixelColor(x, y).blue()) < 110;
    return n;
}

} // namespace

class TestMacroPanel : public QObject {
    Q_OBJECT
private slots:
    void scenarios_data();
    void scenarios();
    void table();
};

void TestMacroPanel::scenarios_data() {
    // Steps, from methane with 1,0 mol of each reactant in an open system:
    //   rN reaction N; iso / open the kind of system; aI:V puts V in amount field I and leaves
    //   it; kI:V types V there, lI / eI leave it by Tab / Enter; sN the slider; tN / cN run N
    //   ticks of Timer2 / Timer3; 8..11 click the image buttons; q moves the slider at the
    //   next pass of the event loop.
    // Checks, "key=value" separated by ";": fI field I's text; n the four amounts ("keep" when
    //   the fourth is left alone); x; E the energy; G Graphe enabled; s the slider; T2 / T3
    //   running; C the cooling counter; P pixel probes of the system picture (checkPixels).
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("checks");
    auto row = [](const char* steps, const char* checks) {
        QTest::newRow(steps) << QString::fromLatin1(steps) << QString::fromLatin1(checks);
    };
    row("s10000", "n=  0,5|  0,0|  0,5|  1,0;x=0,5 mol;E=-401,0 kJ;G=1");
    row("iso s10000", "n=  0,5|  0,0|  0,5|  1,0;x=0,5 mol;E=0,0 kJ;G=1");
    row("s5000", "n=  0,75|  0,5|  0,25|  0,5;x=0,25 mol;E=-200,5 kJ");
    row("a1:2 s10000", "n=  0,0|  0,0|  1,0|  2,0;x=1,0 mol;E=-802,0 kJ;G=1");
    row("r5 a0:2 a1:1 s10000", "n=  0,0|  0,0|  2,0|keep;x=1,0 mol;E=-482,0 kJ;G=1");
    row("a0:0 s10000", "n=  0,0|  1,0|  0,0|  0,0;x=0,0 mol;E=0,0 kJ;G=0");
    row("r4 a0:250000 a1:100000 s10000",
        "n= 84 615,385|  0,0| 61 538,462| 76 923,077;x=7 692,308 mol;E=-40 076 923,077 kJ");
    row("r8 a0:2,5 a1:3 s2000", "n=  2,3|  2,4|  0,4|  0,6;x=0,2 mol;E=-248,8 kJ;G=1");
    row("s4000 iso", "s=0;E=0,0 kJ");
    // Typing: a point shows as a comma, letters are refused; leaving validates and clamps.
    row("k0:2.5", "f0=2,5");
    row("k0:2.5 l0 s10000", "f0=  2,5;x=0,5 mol");
    row("s10000 k0:2.5 e0", "f0=  2,5;s=0");
    row("k0:-3", "f0=-3");
    row("k0:-3 l0 s10000", "f0=  0,0;x=0,0 mol");
    row("s10000 k1:250000 l1", "f1= 100 000,0;s=0");
    row("k1:250000 l1 s10000", "f1= 100 000,0;x=1,0 mol");
    row("k1:1a2b", "f1=12");
    row("k1:1a2b l1 s10000", "f1=  12,0;x=1,0 mol");
    row("k0:1,2,3", "f0=1,2,3");
    row("k0:1,2,3 l0 s10000", "f0=  0,0;x=0,0 mol");
    // A paste, by Ctrl+V, Shift+Insert or the field's menu, goes through the same filter.
    row("v0:2.5", "f0=2,5");
    row("i0:2.5", "f0=2,5");
    row("m0:2.5", "f0=2,5");
    row("v0:abc", "f0=");
    row("m1:1a2b", "f1=12");
    row("v1:1\t2.5\r\n", "f1=12,5");
    row("v0:2.5 l0 s10000", "f0=  2,5;x=0,5 mol");
    row("m0:-1.5 l0 s10000", "f0=  0,0;x=0,0 mol");
    // The other shortcuts the menu advertises.
    row("k0:12 A0", "sel=12");
    row("k0:12 A0 C0", "clip=12");
    // Animation and cooling
    row("11 t100", "s=10000;T2=0;x=0,5 mol;C=10000;T3=1");
    row("11 t30 10", "s=3000;T2=0;x=0,15 mol;C=0;T3=0");
    row("11 t30 10 11 t1", "s=3100;T2=1;x=0,155 mol;C=0;T3=0");
    row("11 t10 9", "s=10000;T2=0;x=0,5 mol;C=10000;T3=1");
    // Whatever runs while "État final" lets events through, the final state is drawn last.
    row("q 9", "s=10000;E=-401,0 kJ");
    row("s4321 11 t57", "s=10000;T2=0;x=0,5 mol;C=10000;T3=1");
    row("9 c100", "s=10000;T2=0;C=0;T3=1");
    row("9 c101", "s=10000;T2=0;C=0;T3=0");
    row("iso 9 c1", "s=10000;T2=0;C=0;T3=0");
    row("9 c10 s9000 c1", "s=9000;x=0,45 mol;C=9000;T3=0");
    row("9 c10 s9000 c1 s10000", "s=10000;x=0,5 mol;C=10000;T3=1");
    // Gauges, each redrawn over the other kind of system and probed just inside and just outside
    // its top: system thermometer, system bar, surroundings thermometer, surroundings bar; the
    // two initial level marks stay.
    row("iso open s10000", "P=138,60 r 138,54 w 70,174 b 70,168 w 338,108 r 338,102 w 270,68 b "
                           "270,62 w 54,138 k 254,98 k");
    row("iso s7000", "P=138,55 r 138,54 w 70,138 k 70,137 w 338,135 r 338,134 w 270,98 k "
                     "270,97 w 54,138 k 254,98 k");
    row("iso s10000", "P=138,37 r 138,31 w 70,141 b 70,135 w 338,138 r 338,132 w 270,101 b "
                      "270,95 w 54,138 k 254,98 k");
    row("iso open s10000 c50", "P=138,84 r 138,78 w 70,184 b 70,178 w 338,108 r 338,102 w "
                               "270,58 b 270,52 w 54,138 k 254,98 k");
    // The wall edge, the surroundings marks at 106 / 136 (136 and 109 are graduations), the
    // system mark, bulb stub, ball rim and highlight; the isolating wall at 234 or none.
    row("iso open", "P=333,106 k 333,136 g 133,106 k 133,109 g 138,210 d 337,210 r 228,134 o "
                    "37,82 p 234,134 B");
    row("iso", "P=333,106 g 333,136 k 133,106 k 133,109 g 138,210 d 337,210 r 228,134 o "
               "37,82 p 234,134 k");
}

void TestMacroPanel::scenarios() {
    QFETCH(QString, steps);
    QFETCH(QString, checks);
    Harness h;
    MacroPanel* p = h.panel;
    p->label4(3)->setText(QStringLiteral("keep"));
    for (const QString& step : steps.split(u' ')) {
        const int n = step.mid(1).section(u':', 0, 0).toInt();
        if (step == QLatin1String("iso") || step == QLatin1String("open")) {
            h.setSystem(step == QLatin1String("open"));
        } else if (step == QLatin1String("q")) {
            QTimer::singleShot(0, p, [p] { p->hscroll1()->setValue(1234); });
        } else if (step[0] == u'r') {
            h.select(n);
        } else if (step[0] == u'a') {
            p->text1(n)->setText(step.mid(3));
            p->Text1_LostFocus(n);
        } else if (step[0] == u'k') { // a switch to another window changes nothing
            p->text1(n)->clear();
            QTest::keyClicks(p->text1(n), step.mid(3));
            QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
            QCoreApplication::sendEvent(p->text1(n), &away);
        } else if (step[0] == u'v' || step[0] == u'i' || step[0] == u'm') {
            QLineEdit* field = p->text1(n);
            field->clear();
            QGuiApplication::clipboard()->setText(step.mid(3));
            if (step[0] == u'v') {
                QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier);
            } else if (step[0] == u'i') {
                QTest::keyClick(field, Qt::Key_Insert, Qt::ShiftModifier);
            } else {
                QTimer::singleShot(0, [] {
                    auto* menu = QApplication::activePopupWidget();
                    QVERIFY(menu);
                    menu->findChild<QAction*>(QStringLiteral("edit-paste"))->trigger();
                    menu->close();
                });
                emit field->customContextMenuRequested(QPoint(5, 5));
            }
        } else if (step[0] == u'A') {
            QTest::keyClick(p->text1(n), Qt::Key_A, Qt::ControlModifier);
        } else if (step[0] == u'C') {
            QGuiApplication::clipboard()->clear();
            QTest::keyClick(p->text1(n), Qt::Key_C, Qt::ControlModifier);
        } else if (step[0] == u'l') {
            QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
            QCoreApplication::sendEvent(p->text1(n), &out);
        } else if (step[0] == u'e') {
            QTest::keyClick(p->text1(n), Qt::Key_Return);
        } else if (step[0] == u's') {
            p->hscroll1()->setValue(n);
        } else if (step[0] == u't' || step[0] == u'c') {
            for (int i = 0; i < n; ++i)
                step[0] == u't' ? p->Timer2_Timer() : p->Timer3_Timer();
        } else {
            QTest::mouseClick(p->frame2()->findChild<QWidget*>("Image" + step), Qt::LeftButton);
        }
    }
    QStringList amounts;
    QMap<QString, QString> got;
    for (int i = 0; i < 4; ++i) {
        amounts << p->label4(i)->text();
        got[QStringLiteral("f%1").arg(i)] = p->text1(i)->text();
    }
    got.insert({
        {"n", amounts.join(u'|')},
        {"x", p->label5()->text()},
        {"E", p->label6()->text()},
        {"G", QString::number(p->command3()->isEnabled())},
        {"s", QString::number(p->hscroll1()->value())},
        {"T2", QString::number(p->timer2()->isActive())},
        {"T3", QString::number(p->timer3()->isActive())},
        {"C", QString::number(h.state.CoolingCounter)},
        {"sel", p->text1(0)->selectedText()},
        {"clip", QGuiApplication::clipboard()->text()},
    });
    for (const QString& check : checks.split(u';')) {
        const qsizetype eq = check.indexOf(u'=');
        if (check.startsWith(u'P')) {
            checkPixels(p->picture4()->image(), check.mid(eq + 1));
            continue;
        }
        QVERIFY2(got.contains(check.left(eq)), qPrintable(check));
        QCOMPARE(got[check.left(eq)], check.mid(eq + 1));
    }
    // Printing draws the picture again from its code: at the screen's size, the same pixels.
    QImage redrawn(p->picture4()->size(), QImage::Format_RGB32);
    QPainter painter(&redrawn);
    p->picture4()->paintTo(painter);
    painter.end();
    QCOMPARE(redrawn, p->picture4()->image());
    // The totals are read as they stand; a difference past 16 bits keeps the energy label.
    h.state.BrokenBondsEnergy = -30000;
    h.state.FormedBondsEnergy = 10000;
    p->majqant();
    QCOMPARE(p->label6()->text(), got["E"]);
}

void TestMacroPanel::table() {
    Harness h;
    for (QWidget* w : h.panel->frame2()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        QVERIFY2(QRect(0, 0, 452, 386).contains(w->geometry()), qPrintable(w->objectName()));
    const QImage img = h.panel->frame2()->image();
    for (int left : {104, 176, 256, 328}) // one species over each field
        QVERIFY2(inkCount(img, QRect(left, 16, 65, 22)) > 40, qPrintable(QString::number(left)));
    QVERIFY(inkCount(img, QRect(322, 18, 6, 16)) > 3);  // "+" between the products
    QVERIFY(inkCount(img, QRect(242, 18, 14, 16)) > 5); // the arrow between the sides
    // Etched line from 10 to width - 10, the last point left out.
    checkPixels(img, QStringLiteral("10,81 G 10,82 w 441,81 G 441,82 w 442,81 B 9,82 B"));
    // Reactions 5 and 6 have a single product: no fourth column, nothing drawn there.
    for (int r = 1; r <= 8; ++r) {
        h.select(r);
        const bool single = r == 5 || r == 6;
        QCOMPARE(h.panel->text1(3)->isHidden(), single);
        QCOMPARE(h.panel->label4(3)->isHidden(), single);
        if (single)
            QCOMPARE(inkCount(h.panel->frame2()->image(), QRect(322, 10, 130, 30)), 0);
    }
    QCOMPARE(h.panel->label4(3)->text(), QStringLiteral("  0,0")); // reaction 8 wrote it
}

QTEST_MAIN(TestMacroPanel)
#include "tst_macropanel.moc"
