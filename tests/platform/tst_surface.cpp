#include "platform/canvas.h"
#include "platform/surface.h"

#include <QPainter>
#include <QTest>
#include <functional>
#include <tuple>

using platform::Canvas;
using platform::FillStyle;
using platform::LineKind;
using platform::Surface;

namespace {
const QColor Red(255, 0, 0), Blue(0, 0, 255), White(255, 255, 255), Green(0, 160, 0);
const QColor Back(240, 235, 230);

using Pixels = QList<std::tuple<int, int, QColor>>; // x, y, colour
using Draw = std::function<void(Surface&)>;

// Draws a box from its second corner to its first with the given fill settings.
Draw box(LineKind kind, FillStyle fill) {
    return [=](Surface& s) {
        Canvas& c = s.canvas();
        c.state().fillStyle = fill;
        c.state().fillColor = Blue;
        c.line(6, 8, 2, 3, Red, kind);
        QCOMPARE(c.state().currentX, 2.0);
    };
}

// A red square frozen as the picture, a blue one drawn over it, then Cls.
Draw clsOverFrozen(bool clearPicture) {
    return [=](Surface& s) {
        s.setBackColor(Back);
        s.canvas().line(1, 1, 5, 5, Red, LineKind::FilledBox);
        s.freezePicture();
        s.canvas().line(10, 10, 15, 15, Blue, LineKind::FilledBox);
        if (clearPicture)
            s.clearPicture();
        s.cls();
    };
}
} // namespace
Q_DECLARE_METATYPE(Pixels)
Q_DECLARE_METATYPE(Draw)

class TestSurface : public QObject {
    Q_OBJECT
private slots:
    void pixels_data();
    void pixels();
    void printAdvancesCurrentX();
    void symbolText_data();
    void symbolText();
    void paintToScaledDevice();
    void redrawOfABoxDrawnOutside();
    void restoredImageLeavesThePicture();
};

void TestSurface::pixels_data() {
    QTest::addColumn<Draw>("draw");
    QTest::addColumn<Pixels>("pixels");

    // A box covers both corners, whichever order they come in.
    const Pixels edges = {{2, 3, Red}, {6, 3, Red},   {2, 8, Red},   {6, 8, Red},   {4, 3, Red},
                          {2, 5, Red}, {1, 3, White}, {7, 8, White}, {4, 2, White}, {4, 9, White}};
    QTest::newRow("B, transparent")
        << box(LineKind::Box, FillStyle::Transparent) << edges + Pixels{{4, 5, White}};
    QTest::newRow("B, solid fill")
        << box(LineKind::Box, FillStyle::Solid) << edges + Pixels{{4, 5, Blue}};
    QTest::newRow("BF") << box(LineKind::FilledBox, FillStyle::Transparent)
                        << edges + Pixels{{4, 5, Red}};
    QTest::newRow("plain lines leave out the last point") << Draw([](Surface& s) {
        s.canvas().line(0, 5, 10, 5, Red);
        s.canvas().line(3, 0, 3, 4, Blue);
        s.canvas().line(12, 12, 16, 16, Green);
    }) << Pixels{{0, 5, Red},   {9, 5, Red},     {10, 5, White}, {3, 3, Blue},
                 {3, 4, White}, {14, 14, Green}, {16, 16, White}};
    QTest::newRow("user scale") << Draw([](Surface& s) {
        s.setScale(0, 0, 100, 50);
        s.canvas().line(10, 10, 20, 20, Red, LineKind::FilledBox);
        QCOMPARE(s.toUser(QPointF(100, 50)), QPointF(50, 25));
    }) << Pixels{{20, 20, Red}, {40, 40, Red}, {19, 30, White}, {41, 30, White}};
    QTest::newRow("circle fill") << Draw([](Surface& s) {
        s.canvas().state().fillStyle = FillStyle::Solid;
        s.canvas().state().fillColor = Blue;
        s.canvas().circle(20, 20, 9, Red);
    }) << Pixels{{20, 20, Blue}, {29, 20, Red}, {20, 11, Red}, {31, 20, White}};
    QTest::newRow("Cls keeps the frozen picture")
        << clsOverFrozen(false) << Pixels{{3, 3, Red}, {12, 12, Back}};
    QTest::newRow("Cls after the picture is cleared")
        << clsOverFrozen(true) << Pixels{{3, 3, Back}, {12, 12, Back}};
}

void TestSurface::pixels() {
    QFETCH(Draw, draw);
    QFETCH(Pixels, pixels);
    Surface s;
    s.resize(200, 100);
    draw(s);
    const QImage img = s.image();
    for (const auto& [x, y, colour] : pixels) {
        const QColor got(img.pixel(x, y));
        QVERIFY2(got == colour,
                 qPrintable(QString::asprintf("(%d, %d) is %s", x, y, qPrintable(got.name()))));
    }
}

void TestSurface::printAdvancesCurrentX() {
    QCOMPARE(platform::pointsToPixels(8), 11);
    QCOMPARE(platform::pointsToPixels(10), 13);
    Surface s;
    s.resize(200, 40);
    Canvas& c = s.canvas();
    c.state().fontSize = 10;
    c.state().currentX = 5;
    c.state().currentY = 10;
    const double w = c.textWidth(QStringLiteral("Micro"));
    QVERIFY(w > 20 && w < 40);
    c.print(QStringLiteral("Micro"));
    QCOMPARE(c.state().currentX, 5 + w);
    QCOMPARE(c.state().currentY, 10.0);
    // The text hangs from CurrentY: no ink above it, ink within one line below.
    const int lineHeight = int(c.textHeight());
    const QImage img = s.image();
    int above = 0, within = 0;
    for (int x = 0; x < 60; ++x)
        for (int y = 0; y < 10 + lineHeight; ++y)
            (y < 10 ? above : within) += qGray(img.pixel(x, y)) < 128;
    QCOMPARE(above, 0);
    QVERIFY(within > 20);
}

void TestSurface::symbolText_data() {
    QTest::addColumn<QString>("in");
    QTest::addColumn<QString>("out");
    // Letters other than the mapped ones stay as they are ("E" is not read as Epsilon).
    QTest::newRow("keys") << QString::fromUtf8("E = Dp\u00d6\u00b8\u00ac")
                          << QString::fromUtf8("E = \u0394\u03c0\u221a\u00f7\u2190");
    QTest::newRow("long arrow") << QString::fromUtf8(" \u00be\u00ae")
                                << QString::fromUtf8(" \u27f6");
    QTest::newRow("lone extender") << QString::fromUtf8("\u00be") << QString::fromUtf8("\u2500");
}

void TestSurface::symbolText() {
    QFETCH(QString, in);
    QFETCH(QString, out);
    QCOMPARE(platform::symbolToUnicode(in), out);
}

void TestSurface::paintToScaledDevice() {
    Surface s;
    s.resize(20, 10);
    s.setPaintHandler([](Canvas& c) { c.line(0, 0, 9, 9, Red, LineKind::FilledBox); });
    QImage page(80, 40, QImage::Format_RGB32);
    page.fill(Qt::black);
    QPainter p(&page);
    p.scale(4, 4); // a printer page has many more dots per surface pixel
    s.paintTo(p);
    p.end();
    QCOMPARE(QColor(page.pixel(2, 2)), Red);
    QCOMPARE(QColor(page.pixel(38, 38)), Red);
    QCOMPARE(QColor(page.pixel(42, 2)), White);
}

void TestSurface::redrawOfABoxDrawnOutside() {
    Surface s;
    s.resize(20, 10);
    s.canvas().line(0, 0, 9, 9, Red, LineKind::FilledBox);
    s.freezePicture();
    QImage page(80, 40, QImage::Format_RGB32);
    const auto print = [&] {
        page.fill(Qt::black);
        QPainter p(&page);
        p.scale(4, 4);
        s.paintTo(p);
    };
    print(); // no drawing code: the image, enlarged
    QCOMPARE(QColor(page.pixel(2, 2)), Red);
    QCOMPARE(QColor(page.pixel(42, 2)), White);
    // With its drawing code the box is drawn again, its frozen picture left out.
    s.setRedrawHandler([](Canvas& c) { c.line(10, 0, 19, 9, Green, LineKind::FilledBox); });
    print();
    QCOMPARE(QColor(page.pixel(2, 2)), White);
    QCOMPARE(QColor(page.pixel(42, 2)), Green);
    QCOMPARE(QColor(page.pixel(78, 38)), Green);
}

void TestSurface::restoredImageLeavesThePicture() {
    Surface s;
    s.resize(20, 10);
    s.canvas().line(0, 0, 4, 4, Blue, LineKind::FilledBox);
    s.freezePicture();
    s.canvas().line(10, 0, 14, 4, Red, LineKind::FilledBox);
    const QImage kept = s.image();
    s.canvas().line(0, 0, 19, 9, Green, LineKind::FilledBox);
    s.restoreImage(kept);
    QCOMPARE(s.image(), kept);
    s.cls(); // the frozen picture is still the blue square alone
    QCOMPARE(QColor(s.image().pixel(2, 2)), Blue);
    QCOMPARE(QColor(s.image().pixel(12, 2)), White);
}

QTEST_MAIN(TestSurface)
#include "tst_surface.moc"
