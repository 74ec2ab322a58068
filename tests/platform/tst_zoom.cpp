#include "macro/macropanel.h"
#include "mainwindow/feuillep.h"
#include "micro/micropanel.h"
#include "platform/pictureexport.h"
#include "platform/surface.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

// The main window at a zoom of 200 %: drawings are made at the screen's resolution, so a
// one-pixel line is two device pixels of its exact colour, never a blend.
class TestZoom : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void sharpPixels_data();
    void sharpPixels();
    void logicalReadBack();
    void exportMatchesScreen_data();
    void exportMatchesScreen();

private:
    platform::Surface* surface(const QString& name) const;

    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<feuilleP> w_;
};

void TestZoom::init() {
    dir_ = std::make_unique<QTemporaryDir>();
    qputenv("THERMIVO_PROGRAM_FOLDER", dir_->path().toUtf8());
    w_ = std::make_unique<feuilleP>();
    w_->setScreenSizeOverride(QSize(2048, 1536));
    w_->show();
    QVERIFY(QTest::qWaitForWindowExposed(w_.get()));
    w_->selectReaction(1);
}

void TestZoom::cleanup() {
    w_->setQuietShutdown(true);
    w_->close();
    w_.reset();
    dir_.reset();
}

platform::Surface* TestZoom::surface(const QString& name) const {
    if (name == QLatin1String("Picmicro"))
        return w_->micro()->picmicro();
    return w_->macro()->picture4();
}

void TestZoom::sharpPixels_data() {
    QTest::addColumn<QString>("picture");
    QTest::addColumn<int>("tab");
    QTest::addColumn<QPoint>("at"); // logical pixel of a one-pixel feature
    QTest::addColumn<QColor>("colour");
    // The first C–H bond of methane, a box from (125, 110) to (155, 111).
    QTest::newRow("bond") << "Picmicro" << 1 << QPoint(140, 110) << QColor(0, 0, 0);
    QTest::newRow("bond, second row") << "Picmicro" << 1 << QPoint(140, 111) << QColor(0, 0, 0);
    // The energy bar's frame, from (55, 18) to (85, 218), and the mark of its initial level.
    QTest::newRow("gauge edge") << "Picture4" << 2 << QPoint(55, 60) << QColor(0, 0, 0);
    QTest::newRow("gauge mark") << "Picture4" << 2 << QPoint(87, 138) << QColor(0, 0, 0);
    // The system's red thermometer column at x 138.
    QTest::newRow("thermometer") << "Picture4" << 2 << QPoint(138, 150) << QColor(255, 0, 0);
}

void TestZoom::sharpPixels() {
    QFETCH(QString, picture);
    QFETCH(int, tab);
    QFETCH(QPoint, at);
    QFETCH(QColor, colour);
    w_->selectTab(tab);
    platform::Surface* s = surface(picture);
    QCOMPARE(s->devicePixelRatioF(), 2.0);
    const QImage device = s->deviceImage();
    QCOMPARE(device.size(), s->size() * 2);
    // The whole 2 × 2 block, exactly the colour.
    for (int dy = 0; dy < 2; ++dy)
        for (int dx = 0; dx < 2; ++dx)
            QCOMPARE(QColor(device.pixel(2 * at.x() + dx, 2 * at.y() + dy)), colour);
}

void TestZoom::logicalReadBack() {
    w_->selectTab(2);
    platform::Surface* s = w_->macro()->picture4();
    const QImage logical = s->image();
    QCOMPARE(logical.size(), s->size());
    QCOMPARE(logical.devicePixelRatio(), 1.0);
    QCOMPARE(QColor(logical.pixel(55, 60)), QColor(0, 0, 0));
    QCOMPARE(QColor(logical.pixel(138, 150)), QColor(255, 0, 0));
}

void TestZoom::exportMatchesScreen_data() {
    QTest::addColumn<QString>("picture");
    QTest::newRow("Picture4") << "Picture4";
    QTest::newRow("Picmicro") << "Picmicro";
}

void TestZoom::exportMatchesScreen() {
    QFETCH(QString, picture);
    w_->selectTab(picture == QLatin1String("Picture4") ? 2 : 1);
    platform::Surface* s = surface(picture);
    const QString path = dir_->filePath(QStringLiteral("x.png"));
    QVERIFY(platform::exportSurface(*s, path, 2));
    const QImage png = QImage(path).convertToFormat(QImage::Format_RGB32);
    QImage screen = s->deviceImage().convertToFormat(QImage::Format_RGB32);
    screen.setDevicePixelRatio(1.0);
    QCOMPARE(png.size(), screen.size());
    QCOMPARE(png, screen);
}

int main(int argc, char* argv[]) {
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication app(argc, argv);
    TestZoom test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_zoom.moc"
