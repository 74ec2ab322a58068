#include "microfixture.h"

#include "micro/drawing.h"
#include "micro/geometry.h"
#include "platform/imagebutton.h"

#include <QLabel>
#include <QTest>
#include <QTimer>

namespace {

const QColor kWhite(255, 255, 255);
const QColor kBlack(0, 0, 0);

// Pixel of a surface at a point given in its own scale.
QColor pixelAt(platform::Surface* s, double x, double y) {
    const double sx = s->scaleWidth() / s->width();
    const double sy = s->scaleHeight() / s->height();
    return s->image().pixelColor(static_cast<int>(std::floor(x / sx + 0.5)),
                                 static_cast<int>(std::floor(y / sy + 0.5)));
}

int darkPixels(const QImage& img, const QRect& area) {
    int n = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (qGray(img.pixel(x, y)) < 100)
                ++n;
    return n;
}

} // namespace

class TestMicroPanel : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void controls_data();
    void controls();
    void layoutFits();
    void bannerLeadingBlanks();
    void atomPixels_data();
    void atomPixels();
    void methaneBondPixels_data();
    void methaneBondPixels();
    void diagramPixels();
    void timerIntervals_data();
    void timerIntervals();
    void image4_data();
    void image4();
    void image5ResetsAndStops();
    void image6Twice();
    void image7Pauses();
    void optionClicks();
    void reactionChangeKeepsTimer();
    void dataPanelFollowsTabAndHeat();

private:
    std::unique_ptr<MicroFixture> f_;
};

void TestMicroPanel::init() {
    f_ = std::make_unique<MicroFixture>();
}

void TestMicroPanel::cleanup() {
    f_.reset();
}

void TestMicroPanel::controls_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("toolTip");
    QTest::newRow("Picture3") << "Picture3"
                              << "Onglets"
                              << "";
    QTest::newRow("Picmicro") << "Picmicro"
                              << "Picture3"
                              << "";
    QTest::newRow("Picture2") << "Picture2"
                              << "Picture3"
                              << "";
    QTest::newRow("Label2") << "Label2"
                            << "Picture3"
                            << "";
    QTest::newRow("Image4") << "Image4"
                            << "Picture3"
                            << "Animation";
    QTest::newRow("Image5") << "Image5"
                            << "Picture3"
                            << "État initial";
    QTest::newRow("Image6") << "Image6"
                            << "Picture3"
                            << "État final";
    QTest::newRow("Image7") << "Image7"
                            << "Picture3"
                            << "Pause";
    QTest::newRow("Picture5") << "Picture5"
                              << ""
                              << "";
}

void TestMicroPanel::controls() {
    QFETCH(QString, name);
    QFETCH(QString, parent);
    auto* w = f_->window->findChild<QWidget*>(name);
    QVERIFY(w);
    QCOMPARE(w->parentWidget()->objectName(), parent.isEmpty() ? f_->window->objectName() : parent);
    if (parent.isEmpty())
        QCOMPARE(w->parentWidget(), f_->window.get());
    QTEST(w->toolTip(), "toolTip");
    auto* timer = f_->panel->findChild<QTimer*>(QStringLiteral("Timer1"));
    QVERIFY(timer);
    QCOMPARE(timer->parent(), f_->panel);
    QVERIFY(!timer->isActive());
}

// The Micro tab holds its children without clipping at its real size, and the boxes' scales
// hold every atom, the diagram's labels and the widest banner.
void TestMicroPanel::layoutFits() {
    platform::Surface* p3 = f_->panel->picture3();
    QCOMPARE(p3->size(), QSize(MicroPanel::PanelWidth, MicroPanel::PanelHeight));
    QList<QWidget*> children;
    for (const char* n : {"Picmicro", "Picture2", "Label2", "Image4", "Image5", "Image6", "Image7"})
        children << p3->findChild<QWidget*>(QLatin1String(n));
    for (QWidget* a : children) {
        QVERIFY2(p3->rect().contains(a->geometry()), qPrintable(a->objectName()));
        for (QWidget* b : children)
            QVERIFY2(a == b || !a->geometry().intersects(b->geometry()),
                     qPrintable(a->objectName() + QLatin1Char('/') + b->objectName()));
    }
    platform::Surface* pic = f_->panel->picmicro();
    for (int r = 1; r <= 8; ++r)
        for (const micro::AtomPlacement& a : micro::atomLayout(r)) {
            QVERIFY(std::max(a.startX, a.endX) + 9 < pic->scaleWidth());
            QVERIFY(std::max(a.startY, a.endY) + 9 < pic->scaleHeight());
        }
    // The final label of butane's released bar stands at 300 + 5210 / 63 and is one line tall.
    platform::Surface* p2 = f_->panel->picture2();
    QVERIFY(p2->scaleWidth() >= 57);
    QVERIFY(300 + 5210 / 63.0 + p2->canvas().textHeight() <= p2->scaleHeight());

    for (int r = 1; r <= 9; ++r) {
        f_->ctx.Combo1->setProperty("Tag", QString::number(r));
        p3->refresh();
        QVERIFY2(p3->state().currentX < f_->panel->picture2()->x(), qPrintable(QString::number(r)));
    }
    f_->panel->label2()->setText(micro::energyReadout(-21920.f, 16710, 21920));
    QVERIFY(f_->panel->label2()->sizeHint().width() <= f_->panel->label2()->width());
}

void TestMicroPanel::bannerLeadingBlanks() {
    const auto firstInk = [this](int reaction) {
        f_->ctx.Combo1->setProperty("Tag", QString::number(reaction));
        f_->panel->picture3()->refresh();
        const QImage img = f_->panel->picture3()->image();
        for (int x = 0; x < 330; ++x)
            if (darkPixels(img, QRect(x, 10, 1, 26)) > 0)
                return x;
        return -1;
    };
    QCOMPARE(firstInk(0), -1);
    const int butane = firstInk(4);   // 1 blank
    const int methane = firstInk(1);  // 5 blanks
    const int chlorine = firstInk(6); // 12 blanks
    QVERIFY(butane > 63 && butane < 70);
    QVERIFY(methane > butane + 8);
    QVERIFY(chlorine > methane + 20);
    QVERIFY(firstInk(9) > 63); // the reserve equation draws too
}

void TestMicroPanel::atomPixels_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<QColor>("colour");
    const QColor grey8(128, 128, 128), grey7(192, 192, 192), back(255, 0, 255);
    QTest::newRow("C outline") << 1 << QPoint(0, 9) << grey8;
    QTest::newRow("C base") << 1 << QPoint(0, 8) << QColor(0, 0, 0);
    QTest::newRow("C ring 1") << 1 << QPoint(0, 6) << QColor(55, 55, 55);
    QTest::newRow("C ring 2") << 1 << QPoint(0, 4) << QColor(105, 105, 105);
    QTest::newRow("C ring 3") << 1 << QPoint(0, 2) << QColor(155, 155, 155);
    QTest::newRow("C ring 4") << 1 << QPoint(0, -1) << QColor(205, 205, 205);
    QTest::newRow("C ring 5") << 1 << QPoint(-2, -2) << QColor(255, 255, 255);
    QTest::newRow("C outside") << 1 << QPoint(0, 10) << back;
    QTest::newRow("H outline") << 2 << QPoint(0, 7) << grey8;
    QTest::newRow("H base") << 2 << QPoint(0, 6) << QColor(180, 180, 180);
    QTest::newRow("H ring 2") << 2 << QPoint(3, -3) << QColor(220, 220, 220);
    QTest::newRow("H ring 4 clamped") << 2 << QPoint(-2, -2) << QColor(255, 255, 255);
    QTest::newRow("H outside") << 2 << QPoint(0, 8) << back;
    QTest::newRow("O outline") << 3 << QPoint(0, -9) << grey7;
    QTest::newRow("O base") << 3 << QPoint(0, 8) << QColor(180, 0, 0);
    QTest::newRow("O ring 1") << 3 << QPoint(0, 6) << QColor(215, 55, 55);
    QTest::newRow("O ring 3") << 3 << QPoint(0, 2) << QColor(235, 155, 155);
    QTest::newRow("O ring 5") << 3 << QPoint(-2, -2) << QColor(255, 255, 255);
    QTest::newRow("Cl outline") << 4 << QPoint(0, 9) << grey7;
    QTest::newRow("Cl base") << 4 << QPoint(0, 8) << QColor(0, 180, 0);
    QTest::newRow("Cl ring 2") << 4 << QPoint(0, 4) << QColor(105, 225, 105);
    QTest::newRow("Cl ring 4") << 4 << QPoint(0, -1) << QColor(205, 245, 205);
    QTest::newRow("5 base") << 5 << QPoint(0, 8) << QColor(0, 0, 180);
    QTest::newRow("5 outline") << 5 << QPoint(0, 9) << grey7;
    QTest::newRow("unknown kind draws nothing") << 0 << QPoint(0, 0) << back;
}

void TestMicroPanel::atomPixels() {
    QFETCH(int, kind);
    QFETCH(QPoint, offset);
    QFETCH(QColor, colour);
    platform::Surface box(nullptr);
    box.setBackColor(QColor(255, 0, 255));
    box.resize(60, 60);
    micro::atome(box.canvas(), static_cast<std::int16_t>(kind), 30, 30);
    QCOMPARE(box.image().pixelColor(QPoint(30, 30) + offset), colour);
    QCOMPARE(box.state().fillStyle, platform::FillStyle::Transparent);
}

void TestMicroPanel::methaneBondPixels_data() {
    QTest::addColumn<int>("drawnStep");
    QTest::addColumn<QPoint>("at");
    QTest::addColumn<bool>("ink");
    // Initial state: the four C–H boxes and the two O=O pairs, 5 units apart.
    QTest::newRow("0 cut1 top") << 0 << QPoint(140, 110) << true;
    QTest::newRow("0 cut1 bottom") << 0 << QPoint(140, 111) << true;
    QTest::newRow("0 cut1 above") << 0 << QPoint(140, 109) << false;
    QTest::newRow("0 cut1 below") << 0 << QPoint(140, 112) << false;
    QTest::newRow("0 cut2") << 0 << QPoint(170, 111) << true;
    QTest::newRow("0 cut3 left") << 0 << QPoint(155, 95) << true;
    QTest::newRow("0 cut3 right") << 0 << QPoint(156, 95) << true;
    QTest::newRow("0 cut3 beside") << 0 << QPoint(157, 95) << false;
    QTest::newRow("0 cut4") << 0 << QPoint(156, 125) << true;
    QTest::newRow("0 cut5 upper") << 0 << QPoint(105, 237) << true;
    QTest::newRow("0 cut5 upper 2") << 0 << QPoint(105, 238) << true;
    QTest::newRow("0 cut5 gap") << 0 << QPoint(105, 240) << false;
    QTest::newRow("0 cut5 lower") << 0 << QPoint(105, 243) << true;
    QTest::newRow("0 cut5 under") << 0 << QPoint(105, 244) << false;
    QTest::newRow("0 cut6") << 0 << QPoint(195, 242) << true;
    // After the third cut only bonds 4 to 6 remain.
    QTest::newRow("3 cut1 gone") << 3 << QPoint(140, 110) << false;
    QTest::newRow("3 cut2 gone") << 3 << QPoint(170, 110) << false;
    QTest::newRow("3 cut3 gone") << 3 << QPoint(155, 95) << false;
    QTest::newRow("3 cut4 kept") << 3 << QPoint(155, 125) << true;
    QTest::newRow("3 cut5 kept") << 3 << QPoint(105, 242) << true;
    // Final state: two double bonds 2 units either side of y = 110 and four thick slants.
    QTest::newRow("66 formed1 upper") << 66 << QPoint(140, 107) << true;
    QTest::newRow("66 formed1 upper 2") << 66 << QPoint(140, 108) << true;
    QTest::newRow("66 formed1 axis") << 66 << QPoint(140, 110) << false;
    QTest::newRow("66 formed1 lower") << 66 << QPoint(140, 113) << true;
    QTest::newRow("66 formed1 outside") << 66 << QPoint(140, 114) << false;
    QTest::newRow("66 formed2") << 66 << QPoint(170, 112) << true;
    QTest::newRow("66 formed3 a") << 66 << QPoint(112, 212) << true;
    QTest::newRow("66 formed3 b") << 66 << QPoint(113, 212) << true;
    QTest::newRow("66 formed3 beside") << 66 << QPoint(115, 212) << false;
    QTest::newRow("66 formed4") << 66 << QPoint(113, 238) << true;
    QTest::newRow("66 formed5") << 66 << QPoint(202, 212) << true;
    QTest::newRow("66 formed6") << 66 << QPoint(203, 238) << true;
    QTest::newRow("66 no cut bond") << 66 << QPoint(155, 95) << false;
}

void TestMicroPanel::methaneBondPixels() {
    QFETCH(int, drawnStep);
    QFETCH(QPoint, at);
    QFETCH(bool, ink);
    f_->select(1);
    if (drawnStep == 66)
        f_->panel->Image6_Click();
    else
        f_->runUntil(drawnStep + 1);
    QCOMPARE(int{f_->state.AnimStep}, std::min(drawnStep + 1, 66));
    const QImage img = f_->panel->picmicro()->image();
    QCOMPARE(img.pixelColor(at), ink ? kBlack : kWhite);
    if (drawnStep == 0) {
        // Atoms are drawn over the bond ends.
        QVERIFY(img.pixelColor(95, 237) != kBlack);
        QCOMPARE(img.pixelColor(125, 116), QColor(180, 180, 180));
        QCOMPARE(img.pixelColor(155, 118), kBlack);
    }
}

void TestMicroPanel::diagramPixels() {
    platform::Surface* p2 = f_->panel->picture2();
    f_->select(1);
    QCOMPARE(pixelAt(p2, 52, 300), kBlack); // zero line beyond the bars
    QCOMPARE(pixelAt(p2, 15, 280), kWhite); // nothing received yet
    f_->runUntil(20);                       // drift
    QCOMPARE(pixelAt(p2, 15, 280), QColor(255, 200, 150));
    QCOMPARE(pixelAt(p2, 38, 280), kWhite);
    f_->panel->Image6_Click();
    QCOMPARE(pixelAt(p2, 15, 280), QColor(255, 200, 150));
    QCOMPARE(pixelAt(p2, 38, 280), QColor(150, 200, 255));
    QCOMPARE(pixelAt(p2, 38, 306), QColor(150, 200, 255)); // below zero by the heat
    QCOMPARE(pixelAt(p2, 38, 330), kWhite);

    // The option switches the released bar's label between the two readings.
    const QImage plain = p2->image();
    f_->ctx.Check1[1]->setChecked(true);
    f_->panel->Check1_Click(1);
    QVERIFY(p2->image() != plain);
}

void TestMicroPanel::timerIntervals_data() {
    QTest::addColumn<int>("drawnStep");
    QTest::addColumn<int>("interval");
    QTest::addColumn<bool>("running");
    QTest::newRow("first cut") << 1 << 500 << true;
    QTest::newRow("fifth cut") << 5 << 500 << true;
    QTest::newRow("last cut") << 6 << 20 << true;
    QTest::newRow("drift") << 30 << 20 << true;
    QTest::newRow("atoms placed") << 60 << 20 << true;
    QTest::newRow("first formation") << 61 << 500 << true;
    QTest::newRow("final") << 66 << 500 << false;
}

void TestMicroPanel::timerIntervals() {
    QFETCH(int, drawnStep);
    f_->select(1);
    f_->panel->Image4_Click();
    QTimer* t = f_->panel->timer1();
    QVERIFY(t->isActive());
    while (f_->state.AnimStep < drawnStep)
        f_->panel->Timer1_Timer();
    f_->panel->Timer1_Timer(); // draws drawnStep
    QTEST(t->interval(), "interval");
    QTEST(t->isActive(), "running");
}

void TestMicroPanel::image4_data() {
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::newRow("never started") << 0 << 1;
    QTest::newRow("paused midway") << 5 << 5;
    QTest::newRow("at the end") << 66 << 1; // restarts from the initial state
}

void TestMicroPanel::image4() {
    QFETCH(int, before);
    f_->select(1);
    if (before == 66)
        f_->panel->Image6_Click();
    else
        f_->state.AnimStep = static_cast<std::int16_t>(before);
    f_->panel->Image4_Click();
    QTEST(int{f_->state.AnimStep}, "after");
    QVERIFY(f_->panel->timer1()->isActive());
    if (before == 66) {
        QCOMPARE(f_->state.CurrentEnergy, 0.f);
        QCOMPARE(f_->panel->picmicro()->image().pixelColor(140, 110), kBlack);
    }
}

void TestMicroPanel::image5ResetsAndStops() {
    f_->select(1);
    f_->panel->Image4_Click();
    f_->runUntil(5);
    QCOMPARE(f_->state.CurrentEnergy, 4 * 410.f);
    f_->panel->Image5_Click();
    QCOMPARE(f_->state.AnimStep, 1);
    QCOMPARE(f_->state.CurrentEnergy, 0.f);
    QVERIFY(!f_->panel->timer1()->isActive());
    QCOMPARE(f_->panel->label2()->text(), QStringLiteral("0\n2628\n3430"));
}

// The jump to the end does not replay the cuts: only the last formation is subtracted, once.
void TestMicroPanel::image6Twice() {
    f_->select(1);
    f_->panel->Image4_Click();
    f_->panel->Image6_Click();
    QCOMPARE(f_->state.AnimStep, 66);
    QCOMPARE(f_->state.CurrentEnergy, -460.f);
    QCOMPARE(f_->panel->label2()->text(), QStringLiteral("-460\n2628\n3430"));
    QVERIFY(!f_->panel->timer1()->isActive());
    const QImage shown = f_->panel->picmicro()->image();
    f_->panel->Image6_Click();
    QCOMPARE(f_->state.CurrentEnergy, -460.f);
    QCOMPARE(f_->panel->label2()->text(), QStringLiteral("-460\n2628\n3430"));
    QCOMPARE(f_->panel->picmicro()->image(), shown);
}

void TestMicroPanel::image7Pauses() {
    f_->select(1);
    f_->panel->Image4_Click();
    f_->runUntil(4);
    f_->panel->image(7)->click();
    QVERIFY(!f_->panel->timer1()->isActive());
    QCOMPARE(f_->state.AnimStep, 4);
    f_->panel->image(4)->click();
    QVERIFY(f_->panel->timer1()->isActive());
    QCOMPARE(f_->state.AnimStep, 4);
}

void TestMicroPanel::optionClicks() {
    f_->select(1);
    f_->panel->Image4_Click();
    f_->runUntil(3);
    f_->panel->Image7_Click();
    // Toggling "since the intermediate state" while paused draws one more step.
    f_->ctx.Check1[1]->setChecked(true);
    f_->panel->Check1_Click(1);
    QCOMPARE(f_->state.AnimStep, 4);
    QCOMPARE(f_->state.CurrentEnergy, 3 * 410.f);
    QVERIFY(!f_->panel->timer1()->isActive());
    QCOMPARE(f_->panel->picmicro()->image().pixelColor(155, 95), kWhite);
    // "All at once" goes back to the initial state, stopped.
    f_->panel->Image4_Click();
    f_->ctx.Check1[0]->setChecked(true);
    f_->panel->Check1_Click(0);
    QCOMPARE(f_->state.AnimStep, 1);
    QVERIFY(!f_->panel->timer1()->isActive());
    QCOMPARE(f_->panel->picmicro()->image().pixelColor(140, 110), kBlack);
    // ... and the next tick cuts everything.
    f_->panel->Timer1_Timer();
    QCOMPARE(f_->state.AnimStep, 8);
    QCOMPARE(f_->state.CurrentEnergy, 2628.f);
    QCOMPARE(f_->panel->picmicro()->image().pixelColor(155, 125), kWhite);
    QCOMPARE(f_->panel->label2()->text(), QStringLiteral("2628\n2628\n3430"));
}

void TestMicroPanel::reactionChangeKeepsTimer() {
    f_->select(1);
    f_->panel->Image4_Click();
    f_->runUntil(10);
    f_->select(6);
    QVERIFY(f_->panel->timer1()->isActive());
    QCOMPARE(f_->state.AnimStep, 1);
    QCOMPARE(f_->state.AtomCount, 4);
    QCOMPARE(f_->state.CurrentEnergy, 0.f);
    // H–H of hydrogen chloride's start layout
    QCOMPARE(f_->panel->picmicro()->image().pixelColor(160, 110), kBlack);
}

void TestMicroPanel::dataPanelFollowsTabAndHeat() {
    f_->select(6);
    platform::Surface* p5 = f_->panel->picture5();
    const QRect heatLine(90, 131, 240, 17);
    QCOMPARE(darkPixels(p5->image(), heatLine), 0);
    const QImage micro = p5->image();
    f_->ctx.Check1[2]->setChecked(true);
    f_->panel->Check1_Click(2);
    QVERIFY(darkPixels(p5->image(), heatLine) > 20);
    f_->ctx.Check1[2]->setChecked(false);
    f_->state.ActiveTab = 2;
    p5->refresh();
    QVERIFY(p5->image() != micro);
    QCOMPARE(darkPixels(p5->image(), heatLine), 0);
}

QTEST_MAIN(TestMicroPanel)
#include "tst_micropanel.moc"
