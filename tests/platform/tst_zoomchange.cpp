#include "macro/macropanel.h"
#include "mainwindow/feuillep.h"
#include "mainwindow/optionspanel.h"
#include "micro/drawing.h"
#include "micro/geometry.h"
#include "micro/micropanel.h"
#include "platform/canvas.h"
#include "platform/pictureexport.h"
#include "platform/surface.h"
#include "platform/zoom.h"
#include "support/mainwindowfixture.h"

#include <QApplication>
#include <QComboBox>
#include <QPainter>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>
#include <memory>

using platform::Zoom;

// Choosing the zoom while the program runs: by the keyboard and in the Options tab, every
// drawing drawn again sharp at the new scale, and the choice remembered for the next run.
class TestZoomChange : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void fitting_data();
    void fitting();
    void neighbour_data();
    void neighbour();
    void keys_data();
    void keys();
    void chosenInOptions();
    void sharpAfterChange_data();
    void sharpAfterChange();
    void startingZoom_data();
    void startingZoom();
    void atomCopies_data();
    void atomCopies();

private:
    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<feuilleP> w_;
};

void TestZoomChange::init() {
    QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Thermivo"),
              QStringLiteral("Thermivo"))
        .clear();
    QVERIFY(openMainWindow(dir_, w_));
    w_->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(w_.get()));
    w_->selectReaction(1);
}

void TestZoomChange::cleanup() {
    Zoom::instance().apply(100);
    closeMainWindow(dir_, w_);
}

void TestZoomChange::fitting_data() {
    QTest::addColumn<QSize>("available");
    QTest::addColumn<int>("expected");
    QTest::newRow("projector 1920x1080 less a panel") << QSize(1920, 1040) << 150;
    QTest::newRow("1920x1200") << QSize(1920, 1200) << 200;
    QTest::newRow("just under 200 %") << QSize(1600, 1199) << 175;
    QTest::newRow("1024x768") << QSize(1024, 768) << 125;
    QTest::newRow("1366x728: too low for 125 %") << QSize(1366, 728) << 100;
    QTest::newRow("too small for anything") << QSize(640, 480) << 100;
    QTest::newRow("4K") << QSize(3840, 2100) << 200;
}

void TestZoomChange::fitting() {
    QFETCH(QSize, available);
    QFETCH(int, expected);
    QCOMPARE(platform::fittingZoom(available, QSize(800, 600)), expected);
}

void TestZoomChange::neighbour_data() {
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("direction");
    QTest::addColumn<int>("expected");
    QTest::newRow("up") << 100 << 1 << 125;
    QTest::newRow("down") << 150 << -1 << 125;
    QTest::newRow("top stays") << 200 << 1 << 200;
    QTest::newRow("bottom stays") << 100 << -1 << 100;
    QTest::newRow("not a step") << 130 << 1 << 100;
}

void TestZoomChange::neighbour() {
    QFETCH(int, from);
    QFETCH(int, direction);
    QFETCH(int, expected);
    QCOMPARE(platform::neighbourZoom(from, direction), expected);
}

void TestZoomChange::keys_data() {
    QTest::addColumn<int>("from");
    QTest::addColumn<QKeySequence>("key");
    QTest::addColumn<int>("expected");
    QTest::newRow("Ctrl++") << 100 << QKeySequence(Qt::CTRL | Qt::Key_Plus) << 125;
    QTest::newRow("Ctrl+=") << 150 << QKeySequence(Qt::CTRL | Qt::Key_Equal) << 175;
    QTest::newRow("Ctrl++ at the top") << 200 << QKeySequence(Qt::CTRL | Qt::Key_Plus) << 200;
    QTest::newRow("Ctrl+-") << 175 << QKeySequence(Qt::CTRL | Qt::Key_Minus) << 150;
    QTest::newRow("Ctrl+- at the bottom") << 100 << QKeySequence(Qt::CTRL | Qt::Key_Minus) << 100;
    QTest::newRow("Ctrl+0") << 200 << QKeySequence(Qt::CTRL | Qt::Key_0) << 100;
}

void TestZoomChange::keys() {
    QFETCH(int, from);
    QFETCH(QKeySequence, key);
    QFETCH(int, expected);
    Zoom::instance().apply(from);
    QTest::keySequence(w_.get(), key);
    QCOMPARE(Zoom::instance().percent(), expected);
    QCOMPARE(Zoom::remembered(), expected);
    QCOMPARE(w_->devicePixelRatioF(), expected / 100.0);
    // The window keeps its logical size; its drawings grow with the scale.
    QCOMPARE(w_->size(), QSize(800, 600));
    platform::Surface* picmicro = w_->micro()->picmicro();
    QCOMPARE(picmicro->deviceImage().size(),
             (QSizeF(picmicro->size()) * expected / 100.0).toSize());
    QCOMPARE(w_->options()->zoom()->currentData().toInt(), expected);
}

void TestZoomChange::chosenInOptions() {
    w_->selectTab(3);
    QComboBox* combo = w_->options()->zoom();
    QCOMPARE(combo->count(), 5);
    QCOMPARE(combo->itemText(3), QStringLiteral("175\u00a0%"));
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
    QTest::keyClick(combo, Qt::Key_Down);
    QCOMPARE(Zoom::instance().percent(), 150);
    QCOMPARE(Zoom::remembered(), 150);
    // A program change of the zoom shows in the list without choosing again.
    Zoom::instance().apply(200);
    QCOMPARE(combo->currentText(), QStringLiteral("200\u00a0%"));
    QCOMPARE(Zoom::remembered(), 150);
}

void TestZoomChange::sharpAfterChange_data() {
    QTest::addColumn<int>("tab");
    QTest::addColumn<QPoint>("at"); // logical pixel of a one-pixel feature
    QTest::addColumn<QColor>("colour");
    // The first C–H bond of methane, from (125, 110) to (155, 111).
    QTest::newRow("bond") << 1 << QPoint(140, 110) << QColor(0, 0, 0);
    // The energy bar's frame and the red thermometer column, on the frozen background.
    QTest::newRow("gauge edge") << 2 << QPoint(55, 60) << QColor(0, 0, 0);
    QTest::newRow("thermometer") << 2 << QPoint(138, 150) << QColor(255, 0, 0);
}

void TestZoomChange::sharpAfterChange() {
    QFETCH(int, tab);
    QFETCH(QPoint, at);
    QFETCH(QColor, colour);
    // Drawn at 100 % first, then the zoom changes under the drawings.
    w_->selectTab(tab);
    platform::Surface* s = tab == 1 ? w_->micro()->picmicro() : w_->macro()->picture4();
    QCOMPARE(QColor(s->image().pixel(at)), colour);
    QTest::keySequence(w_.get(), QKeySequence(Qt::CTRL | Qt::Key_Plus));
    QTest::keySequence(w_.get(), QKeySequence(Qt::CTRL | Qt::Key_Plus));
    QTest::keySequence(w_.get(), QKeySequence(Qt::CTRL | Qt::Key_Plus));
    QTest::keySequence(w_.get(), QKeySequence(Qt::CTRL | Qt::Key_Plus));
    QCOMPARE(Zoom::instance().percent(), 200);
    const QImage device = s->deviceImage();
    QCOMPARE(device.size(), s->size() * 2);
    for (int dy = 0; dy < 2; ++dy)
        for (int dx = 0; dx < 2; ++dx)
            QCOMPARE(QColor(device.pixel(2 * at.x() + dx, 2 * at.y() + dy)), colour);
    QCOMPARE(QColor(s->image().pixel(at)), colour);
    // Drawn again at the new resolution, not the old picture enlarged: the same pixels as
    // the drawing code gives at twice the size.
    const QString path = dir_->filePath(QStringLiteral("x.png"));
    QVERIFY(platform::exportSurface(*s, path, 2));
    QImage screen = device.convertToFormat(QImage::Format_RGB32);
    screen.setDevicePixelRatio(1.0);
    QCOMPARE(QImage(path).convertToFormat(QImage::Format_RGB32), screen);
}

void TestZoomChange::startingZoom_data() {
    QTest::addColumn<int>("requested");
    QTest::addColumn<int>("remembered");
    QTest::addColumn<int>("expected");
    // The offscreen screen is 800 × 800: only 100 % fits a 800 × 600 window.
    QTest::newRow("command line wins") << 175 << 125 << 175;
    QTest::newRow("remembered") << 0 << 125 << 125;
    QTest::newRow("not a step: remembered") << 130 << 150 << 150;
    QTest::newRow("nothing: what fits") << 0 << 0 << 100;
}

void TestZoomChange::startingZoom() {
    QFETCH(int, requested);
    QFETCH(int, remembered);
    QFETCH(int, expected);
    if (remembered)
        Zoom::remember(remembered);
    QCOMPARE(Zoom::startingZoom(requested, QSize(800, 600)), expected);
    QCOMPARE(Zoom::startingZoom(requested, QSize(400, 300)),
             requested == 0 && !remembered ? 200 : expected);
}

void TestZoomChange::atomCopies_data() {
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QPoint>("at");
    for (const double scale : {1.25, 1.5, 1.75, 2.0, 4.0})
        for (int kind = micro::Carbon; kind <= micro::FifthElement; ++kind)
            for (const QPoint at : {QPoint(20, 20), QPoint(37, 21), QPoint(22, 39)})
                QTest::addRow("%g%% kind %d at %d,%d", scale * 100, kind, at.x(), at.y())
                    << scale << kind << at;
}

// An atom copied from its picture on a zoomed screen is pixel for pixel the atom drawn there,
// at every offset within a device pixel, and leaves the drawing state as drawing it does.
void TestZoomChange::atomCopies() {
    QFETCH(double, scale);
    QFETCH(int, kind);
    QFETCH(QPoint, at);
    QImage images[2];
    platform::DrawState states[2];
    for (int copy = 0; copy < 2; ++copy) {
        QImage& image = images[copy];
        image = QImage((QSizeF(60, 60) * scale).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        image.fill(QColor(240, 235, 230));
        QPainter p(&image);
        platform::Canvas c(p, states[copy], QSize(60, 60));
        // Twice: the second copy comes from the picture kept by the first.
        for (int i = 0; i < 2; ++i) {
            if (copy)
                micro::atome(c, kind, at.x(), at.y());
            else
                micro::atomeDirect(c, kind, at.x(), at.y());
        }
    }
    QCOMPARE(images[1], images[0]);
    QCOMPARE(states[1].currentX, states[0].currentX);
    QCOMPARE(states[1].currentY, states[0].currentY);
    QCOMPARE(states[1].fillColor, states[0].fillColor);
    QCOMPARE(states[1].fillStyle, states[0].fillStyle);
}

int main(int argc, char* argv[]) {
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);
    TestZoomChange test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_zoomchange.moc"
