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
    return s->image().pixelColor(
        static_cast<int>(std::floor(x * s->width() / s->scaleWidth() + 0.5)),
        static_cast<int>(std::floor(y * s->height() / s->scaleHeight() + 0.5)));
}

int darkPixels(const QImage& img, const QRect& area) {
    int n = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            n += qGray(img.pixel(x, y)) < 100;
    return n;
}

} // namespace

class TestMicroPanel : public QObject {
    Q_OBJECT
private slots:
    void init() { f_ = std::make_unique<MicroFixture>(); }
    void cleanup() { f_.reset(); }

    // Tool tips; the Micro tab holds its children without clipping or overlap at its real size, and
    // the boxes' scales hold every atom, the lowest diagram label and the widest banner.
    void controlsAndLayout() {
        platform::Surface* p3 = f_->panel->picture3();
        QCOMPARE(p3->size(), QSize(452, 386));
        QList<QWidget*> kids;
        for (const char* n :
             {"Picmicro", "Picture2", "Label2", "Image4", "Image5", "Image6", "Image7"})
            kids << p3->findChild<QWidget*>(QLatin1String(n));
        const QStringList tips{"Animation", "État initial", "État final", "Pause"};
        for (int n = 0; n < 4; ++n)
            QCOMPARE(kids[3 + n]->toolTip(), tips[n]);
        for (QWidget* a : kids) {
            QVERIFY2(p3->rect().contains(a->geometry()), qPrintable(a->objectName()));
            for (QWidget* b : kids)
                QVERIFY(a == b || !a->geometry().intersects(b->geometry()));
        }
        platform::Surface* pic = f_->panel->picmicro();
        for (int r = 1; r <= 8; ++r)
            for (const micro::AtomPlacement& a : micro::atomLayout(r))
                QVERIFY(std::max(a.startX, a.endX) + 9 < pic->scaleWidth() &&
                        std::max(a.startY, a.endY) + 9 < pic->scaleHeight());
        platform::Surface* p2 = f_->panel->picture2();
        QVERIFY(p2->scaleWidth() >= 57);
        QVERIFY(300 + 5210 / 63.0 + p2->canvas().textHeight() <= p2->scaleHeight());
        for (int r = 1; r <= 9; ++r) {
            f_->ctx.Combo1->setProperty("Tag", QString::number(r));
            p3->refresh();
            QVERIFY(p3->state().currentX < p2->x());
        }
        f_->panel->label2()->setText(micro::energyReadout(-21920.f, 16710, 21920));
        QVERIFY(f_->panel->label2()->sizeHint().width() <= f_->panel->label2()->width());
    }

    void atomPixels_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QPoint>("offset");
        QTest::addColumn<QColor>("colour");
        const QColor grey8(128, 128, 128), grey7(192, 192, 192), back(255, 0, 255);
        QTest::newRow("C outline") << 1 << QPoint(0, 9) << grey8;
        QTest::newRow("C base") << 1 << QPoint(0, 8) << kBlack;
        QTest::newRow("C ring 3") << 1 << QPoint(0, 2) << QColor(155, 155, 155);
        QTest::newRow("C outside") << 1 << QPoint(0, 10) << back;
        QTest::newRow("H outline") << 2 << QPoint(0, 7) << grey8;
        QTest::newRow("H base") << 2 << QPoint(0, 6) << QColor(180, 180, 180);
        QTest::newRow("H ring 4 clamped") << 2 << QPoint(-2, -2) << kWhite;
        QTest::newRow("O outline") << 3 << QPoint(0, -9) << grey7;
        QTest::newRow("O ring 3") << 3 << QPoint(0, 2) << QColor(235, 155, 155);
        QTest::newRow("Cl outline") << 4 << QPoint(0, 9) << grey7;
        QTest::newRow("Cl ring 4") << 4 << QPoint(0, -1) << QColor(205, 245, 205);
        QTest::newRow("5 base") << 5 << QPoint(0, 8) << QColor(0, 0, 180);
        QTest::newRow("no element") << 0 << QPoint(0, 0) << back;
    }

    void atomPixels() {
        QFETCH(int, kind);
        QFETCH(QPoint, offset);
        platform::Surface box(nullptr);
        box.setBackColor(QColor(255, 0, 255));
        box.resize(60, 60);
        micro::atome(box.canvas(), static_cast<std::int16_t>(kind), 30, 30);
        QTEST(box.image().pixelColor(QPoint(30, 30) + offset), "colour");
        QCOMPARE(box.state().fillStyle, platform::FillStyle::Transparent);
    }

    void methaneBondPixels_data() {
        QTest::addColumn<int>("drawnStep");
        QTest::addColumn<QString>("ink");  // points that must be black
        QTest::addColumn<QString>("bare"); // points that must be white
        // Boxes (125,110)-(155,111), (155,80)-(156,110), O=O at 237-238 and 242-243 ...
        QTest::newRow("initial") << 0
                                 << "140,110 140,111 170,111 155,95 156,95 156,125 105,237 "
                                    "105,238 105,243 195,242"
                                 << "140,109 140,112 157,95 105,240 105,244";
        QTest::newRow("third cut") << 3 << "155,125 105,242"
                                   << "140,110 170,110 155,95";
        // ... then C=O boxes 2 either side of y = 110 and O–H lines doubled in x.
        QTest::newRow("final") << 66
                               << "140,107 140,108 140,113 170,112 112,212 113,212 113,238 "
                                  "202,212 203,238"
                               << "140,110 140,114 115,212 155,95";
    }

    void methaneBondPixels() {
        QFETCH(int, drawnStep);
        f_->select(1);
        if (drawnStep == 66)
            f_->panel->Image6_Click();
        else
            f_->runUntil(drawnStep + 1);
        const QImage img = f_->panel->picmicro()->image();
        QFETCH(QString, ink);
        QFETCH(QString, bare);
        for (const auto& [points, colour] : {std::pair{ink, kBlack}, std::pair{bare, kWhite}})
            for (const QString& p : points.split(QLatin1Char(' '))) {
                const QStringList xy = p.split(QLatin1Char(','));
                QVERIFY2(img.pixelColor(xy[0].toInt(), xy[1].toInt()) == colour, qPrintable(p));
            }
        if (drawnStep == 0) { // atoms drawn over the bond ends
            QVERIFY(img.pixelColor(95, 237) != kBlack);
            QCOMPARE(img.pixelColor(125, 116), QColor(180, 180, 180));
        }
    }

    void diagramAndBanner() {
        platform::Surface* p2 = f_->panel->picture2();
        f_->select(1);
        QCOMPARE(pixelAt(p2, 52, 300), kBlack); // zero line beyond the bars
        f_->runUntil(20);                       // drift: the full received bar only
        QCOMPARE(pixelAt(p2, 15, 280), QColor(255, 200, 150));
        QCOMPARE(pixelAt(p2, 38, 280), kWhite);
        f_->panel->Image6_Click();
        QCOMPARE(pixelAt(p2, 38, 280), QColor(150, 200, 255));
        QCOMPARE(pixelAt(p2, 38, 306), QColor(150, 200, 255)); // below zero by the heat
        QCOMPARE(pixelAt(p2, 38, 330), kWhite);
        const QImage plain = p2->image();
        f_->ctx.Check1[1]->setChecked(true);
        f_->panel->Check1_Click(1);
        QVERIFY(p2->image() != plain); // the released bar's label changes reading

        // Butane's banner starts after one leading blank.
        const auto firstInk = [this](int reaction) {
            f_->ctx.Combo1->setProperty("Tag", QString::number(reaction));
            f_->panel->picture3()->refresh();
            for (int x = 0; x < 330; ++x)
                if (darkPixels(f_->panel->picture3()->image(), QRect(x, 10, 1, 26)) > 0)
                    return x;
            return -1;
        };
        QVERIFY(firstInk(4) > 63 && firstInk(4) < 70);
    }

    // Each cut and formation is held 500 ms, the drift between them ticks every 20 ms.
    void timerIntervals() {
        f_->select(1);
        f_->panel->image(4)->click();
        for (const auto& [drawnStep, interval] :
             {std::pair{1, 500}, {6, 20}, {60, 20}, {61, 500}, {66, 500}}) {
            f_->runUntil(drawnStep);
            f_->panel->Timer1_Timer();
            QCOMPARE(f_->panel->timer1()->interval(), interval);
            QCOMPARE(f_->panel->timer1()->isActive(), drawnStep < 66);
        }
    }

    void buttons() {
        f_->select(1);
        f_->panel->Image4_Click(); // never started: from the first step
        QCOMPARE(f_->state.AnimStep, 1);
        f_->runUntil(5);
        f_->panel->image(7)->click();
        QVERIFY(!f_->panel->timer1()->isActive());
        f_->panel->Image4_Click(); // paused: goes on from there
        QCOMPARE(f_->state.AnimStep, 5);
        QVERIFY(f_->panel->timer1()->isActive());
        // The jump to the end does not replay the cuts: only the last formation is subtracted,
        // once.
        f_->panel->Image5_Click();
        f_->panel->Image4_Click();
        f_->panel->Image6_Click(); // stops the timer
        QCOMPARE(f_->state.AnimStep, 66);
        QCOMPARE(f_->panel->label2()->text(), QStringLiteral("-460\n2628\n3430"));
        QVERIFY(!f_->panel->timer1()->isActive());
        const QImage shown = f_->panel->picmicro()->image();
        f_->panel->Image6_Click();
        QCOMPARE(f_->state.CurrentEnergy, -460.f);
        QCOMPARE(f_->panel->picmicro()->image(), shown);
        f_->panel->Image4_Click(); // at the end: from the initial state again
        QCOMPARE(f_->state.AnimStep, 1);
        QCOMPARE(f_->state.CurrentEnergy, 0.f);
        QCOMPARE(f_->panel->picmicro()->image().pixelColor(140, 110), kBlack);
        QVERIFY(f_->panel->timer1()->isActive());
    }

    void optionClicks() {
        f_->select(1);
        f_->runUntil(3);
        // Toggling "since the intermediate state" while paused draws one more step.
        f_->ctx.Check1[1]->setChecked(true);
        f_->panel->Check1_Click(1);
        QCOMPARE(f_->state.AnimStep, 4);
        QCOMPARE(f_->state.CurrentEnergy, 3 * 410.f);
        QCOMPARE(f_->panel->picmicro()->image().pixelColor(155, 95), kWhite);
        // "All at once" goes back to the initial state, stopped; the next tick cuts everything.
        f_->panel->Image4_Click();
        f_->ctx.Check1[0]->setChecked(true);
        f_->panel->Check1_Click(0);
        QCOMPARE(f_->state.AnimStep, 1);
        QVERIFY(!f_->panel->timer1()->isActive());
        QCOMPARE(f_->panel->label2()->text(), QStringLiteral("0\n2628\n3430"));
        f_->panel->Timer1_Timer();
        QCOMPARE(f_->state.AnimStep, 8);
        QCOMPARE(f_->panel->label2()->text(), QStringLiteral("2628\n2628\n3430"));
        // The heat of reaction appears in the data panel with its option.
        platform::Surface* p5 = f_->panel->picture5();
        const QRect heatLine(90, 131, 240, 17);
        QCOMPARE(darkPixels(p5->image(), heatLine), 0);
        f_->ctx.Check1[2]->setChecked(true);
        f_->panel->Check1_Click(2);
        QVERIFY(darkPixels(p5->image(), heatLine) > 20);
    }

private:
    std::unique_ptr<MicroFixture> f_;
};

QTEST_MAIN(TestMicroPanel)
#include "tst_micropanel.moc"
