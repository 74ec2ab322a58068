#include "platform/canvas.h"
#include "platform/surface.h"

#include <QApplication>
#include <QPainter>
#include <QTest>

using platform::Canvas;
using platform::LineKind;
using platform::Surface;

namespace {
const QColor Red(255, 0, 0), Blue(0, 0, 255), White(255, 255, 255), Green(0, 160, 0);

QColor at(const QImage& img, int x, int y) {
    return QColor(img.pixel(x, y));
}
} // namespace

class TestSurface : public QObject {
    Q_OBJECT
private slots:
    void boxes_data();
    void boxes();
    void plainLineLeavesOutLastPoint();
    void userScale();
    void clsKeepsFrozenPicture();
    void circleFillAndOutline();
    void printAdvancesCurrentX();
    void symbolText_data();
    void symbolText();
    void paletteAndPoints();
    void paintHandlerOnRefreshAndResize();
    void paintToScaledDevice();
};

void TestSurface::boxes_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("solidFill");
    QTest::addColumn<QColor>("inside");
    QTest::newRow("B, transparent") << int(LineKind::Box) << false << White;
    QTest::newRow("B, solid fill") << int(LineKind::Box) << true << Blue;
    QTest::newRow("BF") << int(LineKind::FilledBox) << false << Red;
}

void TestSurface::boxes() {
    QFETCH(int, kind);
    QFETCH(bool, solidFill);
    QFETCH(QColor, inside);
    Surface s;
    s.resize(20, 20);
    Canvas& c = s.canvas();
    c.state().fillStyle = solidFill ? platform::FillStyle::Solid : platform::FillStyle::Transparent;
    c.state().fillColor = Blue;
    // Corners given in any order: the box covers both of them.
    c.line(6, 8, 2, 3, Red, static_cast<LineKind>(kind));
    const QImage img = s.image();
    for (auto [x, y] : {std::pair{2, 3}, {6, 3}, {2, 8}, {6, 8}, {4, 3}, {2, 5}})
        QCOMPARE(at(img, x, y), Red);
    QCOMPARE(at(img, 4, 5), inside);
    for (auto [x, y] : {std::pair{1, 3}, {7, 8}, {4, 2}, {4, 9}})
        QCOMPARE(at(img, x, y), White);
    QCOMPARE(s.state().currentX, 2.0); // the canvas ended with image()
}

void TestSurface::plainLineLeavesOutLastPoint() {
    Surface s;
    s.resize(20, 20);
    s.canvas().line(0, 5, 10, 5, Red);
    s.canvas().line(3, 0, 3, 4, Blue);
    s.canvas().line(12, 12, 16, 16, Green);
    const QImage img = s.image();
    QCOMPARE(at(img, 0, 5), Red);
    QCOMPARE(at(img, 9, 5), Red);
    QCOMPARE(at(img, 10, 5), White);
    QCOMPARE(at(img, 3, 3), Blue);
    QCOMPARE(at(img, 3, 4), White);
    QCOMPARE(at(img, 14, 14), Green);
    QCOMPARE(at(img, 16, 16), White);
}

void TestSurface::userScale() {
    Surface s;
    s.resize(200, 100);
    s.setScale(0, 0, 100, 50);
    s.canvas().line(10, 10, 20, 20, Red, LineKind::FilledBox);
    const QImage img = s.image();
    QCOMPARE(at(img, 20, 20), Red);
    QCOMPARE(at(img, 40, 40), Red);
    QCOMPARE(at(img, 19, 30), White);
    QCOMPARE(at(img, 41, 30), White);
    QCOMPARE(s.toUser(QPointF(100, 50)), QPointF(50, 25));
}

void TestSurface::clsKeepsFrozenPicture() {
    Surface s;
    s.resize(30, 30);
    s.setBackColor(QColor(240, 235, 230));
    s.canvas().line(1, 1, 5, 5, Red, LineKind::FilledBox);
    s.freezePicture();
    s.canvas().line(10, 10, 15, 15, Blue, LineKind::FilledBox);
    s.cls();
    QImage img = s.image();
    QCOMPARE(at(img, 3, 3), Red);
    QCOMPARE(at(img, 12, 12), QColor(240, 235, 230));
    s.clearPicture();
    s.cls();
    img = s.image();
    QCOMPARE(at(img, 3, 3), QColor(240, 235, 230));
}

void TestSurface::circleFillAndOutline() {
    Surface s;
    s.resize(40, 40);
    Canvas& c = s.canvas();
    c.state().fillStyle = platform::FillStyle::Solid;
    c.state().fillColor = Blue;
    c.circle(20, 20, 9, Red);
    const QImage img = s.image();
    QCOMPARE(at(img, 20, 20), Blue);
    QCOMPARE(at(img, 29, 20), Red);
    QCOMPARE(at(img, 20, 11), Red);
    QCOMPARE(at(img, 31, 20), White);
}

void TestSurface::printAdvancesCurrentX() {
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
    for (int x = 0; x < 60; ++x) {
        for (int y = 0; y < 10; ++y)
            above += qGray(img.pixel(x, y)) < 128;
        for (int y = 10; y < 10 + lineHeight; ++y)
            within += qGray(img.pixel(x, y)) < 128;
    }
    QCOMPARE(above, 0);
    QVERIFY(within > 20);
    QCOMPARE(platform::pointsToPixels(8), 11);
    QCOMPARE(platform::pointsToPixels(10), 13);
    QCOMPARE(platform::pointsToPixels(18), 24);
}

void TestSurface::symbolText_data() {
    QTest::addColumn<QString>("in");
    QTest::addColumn<QString>("out");
    QTest::newRow("delta") << "D" << QString(QChar(0x0394));
    QTest::newRow("long arrow") << QString::fromUtf8(" \u00be\u00ae")
                                << QString::fromUtf8(" \u27f6");
    QTest::newRow("keys") << QString::fromUtf8("p\u00d6\u00b8\u00ac")
                          << QString::fromUtf8("\u03c0\u221a\u00f7\u2190");
    QTest::newRow("lone extender") << QString::fromUtf8("\u00be") << QString::fromUtf8("\u2500");
    QTest::newRow("plain") << "E =" << QString::fromUtf8("E =");
}

void TestSurface::symbolText() {
    QFETCH(QString, in);
    QFETCH(QString, out);
    QCOMPARE(platform::symbolToUnicode(in), out);
}

void TestSurface::paletteAndPoints() {
    QCOMPARE(platform::qbColor(0), QColor(0, 0, 0));
    QCOMPARE(platform::qbColor(7), QColor(192, 192, 192));
    QCOMPARE(platform::qbColor(8), QColor(128, 128, 128));
    QCOMPARE(platform::qbColor(9), QColor(0, 0, 255));
    QCOMPARE(platform::qbColor(15), QColor(255, 255, 255));
    Surface s;
    s.resize(10, 10);
    s.canvas().pset(4, 6, Red);
    QImage img = s.image();
    QCOMPARE(at(img, 4, 6), Red);
    QCOMPARE(at(img, 5, 6), White);
}

void TestSurface::paintHandlerOnRefreshAndResize() {
    Surface s;
    s.resize(30, 30);
    int runs = 0;
    s.setPaintHandler([&](Canvas& c) {
        ++runs;
        c.line(0, 0, c.scaleWidth() - 1, c.scaleHeight() - 1, Red, LineKind::Box);
    });
    s.refresh();
    QCOMPARE(runs, 1);
    QCOMPARE(at(s.image(), 29, 29), Red);
    s.resize(50, 40);
    QApplication::sendPostedEvents();
    s.show();
    QVERIFY(QTest::qWaitForWindowExposed(&s));
    QVERIFY(runs >= 2);
    QCOMPARE(at(s.image(), 49, 39), Red);
}

void TestSurface::paintToScaledDevice() {
    Surface s;
    s.resize(20, 10);
    s.setBackColor(White);
    s.setPaintHandler([](Canvas& c) { c.line(0, 0, 9, 9, Red, LineKind::FilledBox); });
    QImage page(80, 40, QImage::Format_RGB32);
    page.fill(Qt::black);
    QPainter p(&page);
    p.scale(4, 4); // a printer page has many more dots per surface pixel
    s.paintTo(p);
    p.end();
    QCOMPARE(at(page, 2, 2), Red);
    QCOMPARE(at(page, 38, 38), Red);
    QCOMPARE(at(page, 42, 2), White);
}

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    TestSurface t;
    return QTest::qExec(&t, argc, argv);
}
#include "tst_surface.moc"
