#include "platform/canvas.h"
#include "platform/printer.h"
#include "platform/surface.h"
#include "support/pdfpages.h"

#include <QApplication>
#include <QPageLayout>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

using platform::Canvas;
using platform::LineKind;
using platform::Printer;

namespace {

const QColor Red(255, 0, 0);
const QColor Blue(0, 0, 255);
const QColor Black(0, 0, 0);
// Whole points, so that no rounding of the layout moves the printable area.
constexpr double MarginPt = 20;
constexpr double MarginTwips = MarginPt * 20;

} // namespace

class TestPrinter : public QObject {
    Q_OBJECT
private slots:
    void init();
    void pageInTwips();
    void printMovesThePosition();
    void titleLandsAtTheTopLeft();
    void pictureDrawnAtPrinterResolution();
    void canvasDrawingPlacedAndSized();
    void newPageAndEndDoc();
    void printerThatCannotStart();

private:
    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<QPrinter> qprinter_;
    QString path_;
};

void TestPrinter::init() {
    dir_ = std::make_unique<QTemporaryDir>();
    path_ = dir_->filePath(QStringLiteral("page.pdf"));
    qprinter_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    qprinter_->setOutputFormat(QPrinter::PdfFormat);
    qprinter_->setOutputFileName(path_);
    qprinter_->setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                         QMarginsF(MarginPt, MarginPt, MarginPt, MarginPt),
                                         QPageLayout::Point));
}

void TestPrinter::pageInTwips() {
    Printer printer(*qprinter_);
    // A4 is 595 × 842 points; 20 points are 400 twips.
    QVERIFY(std::abs(printer.scaleWidth() - (595 * 20 - 800)) <= 2);
    QVERIFY(std::abs(printer.scaleHeight() - (842 * 20 - 800)) <= 2);
    QCOMPARE(platform::twipsPerPixelX(), 15.0);
    QCOMPARE(platform::twipsPerPixelY(), 15.0);
}

void TestPrinter::printMovesThePosition() {
    Printer printer(*qprinter_);
    printer.setFontSize(12);
    // 12 points are 240 twips; the line is the font's height, a little more.
    QVERIFY(printer.textHeight() > 240 && printer.textHeight() < 300);
    printer.setCurrentX(500);
    printer.setCurrentY(100);
    printer.print(QStringLiteral("Ligne"));
    QCOMPARE(printer.currentX(), 0.0);
    QCOMPARE(printer.currentY(), 100 + printer.textHeight());
    printer.setCurrentX(300);
    printer.print(QStringLiteral("a"), Printer::LineEnd::Stay);
    QCOMPARE(printer.currentX(), 300 + printer.textWidth(QStringLiteral("a")));
    QCOMPARE(printer.currentY(), 100 + printer.textHeight());
}

void TestPrinter::titleLandsAtTheTopLeft() {
    {
        Printer printer(*qprinter_);
        printer.setFontName(QStringLiteral("Arial"));
        printer.setFontSize(12);
        printer.setFontBold(true);
        printer.print(QStringLiteral("Orbitex - Thermivo"));
        printer.endDoc();
    }
    auto doc = pdfpages::open(path_);
    QVERIFY(doc);
    QCOMPARE(doc->numPages(), 1);
    std::unique_ptr<Poppler::Page> page = doc->page(0);
    QCOMPARE(page->text(QRectF()).trimmed(), QStringLiteral("Orbitex - Thermivo"));
    const auto boxes = page->textList();
    QVERIFY(!boxes.empty());
    const QRectF first = boxes.front()->boundingBox(); // points
    QVERIFY(std::abs(first.left() - MarginTwips / 20) < 1.5);
    QVERIFY(first.top() >= MarginTwips / 20 - 0.5 && first.top() < MarginTwips / 20 + 4);
    // Cap height of a 12-point face, not of a 10-point or 16-point one.
    QVERIFY(first.height() > 9 && first.height() < 15);
    bool bold = false;
    for (const Poppler::FontInfo& f : doc->fonts())
        bold = bold || f.name().contains(QStringLiteral("LiberationSans-Bold"));
    QVERIFY(bold);
}

void TestPrinter::pictureDrawnAtPrinterResolution() {
    platform::Surface s;
    s.resize(40, 20);
    s.setBackColor(Red);
    s.setPaintHandler([](Canvas& c) {
        c.line(0, 0, 39, 19, Black);
        c.state().currentX = 22;
        c.state().currentY = 2;
        c.print(QStringLiteral("Ab"));
    });
    {
        Printer printer(*qprinter_);
        printer.paintPicture(s, 1440, 720);
        printer.endDoc();
    }
    auto doc = pdfpages::open(path_);
    QVERIFY(doc);
    const double dpi = 600;
    const QImage img = pdfpages::render(*doc, 0, dpi, QRect(0, 0, 1600, 1000));
    const QRect red = pdfpages::boxOf(img, Red);
    // 40 × 20 screen pixels are 600 × 300 twips, 250 × 125 dots at 600 dpi.
    QVERIFY(std::abs(red.left() - pdfpages::pixels(MarginTwips + 1440, dpi)) <= 1.5);
    QVERIFY(std::abs(red.top() - pdfpages::pixels(MarginTwips + 720, dpi)) <= 1.5);
    QVERIFY(std::abs(red.width() - 250) <= 2);
    QVERIFY(std::abs(red.height() - 125) <= 2);

    // A slanted line drawn, not enlarged: its left edge moves by a dot or two per row,
    // never by the six-dot steps of an enlarged screen pixel.
    int previous = -1;
    int steps = 0;
    for (int y = red.top() + 20; y < red.top() + 60; ++y) {
        int edge = -1;
        for (int x = red.left(); x < red.left() + 150 && edge < 0; ++x)
            if (QColor(img.pixel(x, y)) == Black)
                edge = x;
        QVERIFY2(edge >= 0, qPrintable(QStringLiteral("row %1").arg(y)));
        if (previous >= 0) {
            QVERIFY(edge - previous <= 3);
            steps += edge != previous;
        }
        previous = edge;
    }
    QVERIFY(steps > 25);
    // The picture's text stays text.
    std::unique_ptr<Poppler::Page> page = doc->page(0);
    QVERIFY(page->text(QRectF()).contains(QStringLiteral("Ab")));
}

void TestPrinter::canvasDrawingPlacedAndSized() {
    {
        Printer printer(*qprinter_);
        platform::DrawState st;
        st.setScale(0, 0, 100, 100);
        printer.paintPicture([](Canvas& c) { c.line(50, 0, 100, 100, Blue, LineKind::FilledBox); },
                             QSize(10, 10), st, 0, 2880, QSizeF(1440, 720));
        printer.endDoc();
    }
    auto doc = pdfpages::open(path_);
    QVERIFY(doc);
    const double dpi = 144;
    const QImage img = pdfpages::render(*doc, 0, dpi);
    const QRect blue = pdfpages::boxOf(img, Blue);
    // The right half of a 1440 × 720-twip picture: 720 × 720 twips, 72 × 72 dots.
    QVERIFY(std::abs(blue.left() - pdfpages::pixels(MarginTwips + 720, dpi)) <= 1.5);
    QVERIFY(std::abs(blue.top() - pdfpages::pixels(MarginTwips + 2880, dpi)) <= 1.5);
    QVERIFY(std::abs(blue.width() - 72) <= 2);
    QVERIFY(std::abs(blue.height() - 72) <= 2);
}

void TestPrinter::newPageAndEndDoc() {
    {
        Printer printer(*qprinter_);
        for (int copy = 1; copy <= 3; ++copy) {
            printer.setCurrentX(1000);
            printer.print(QStringLiteral("Page %1").arg(copy));
            if (copy < 3) {
                printer.newPage();
                QCOMPARE(printer.currentX(), 0.0);
                QCOMPARE(printer.currentY(), 0.0);
            }
        }
        printer.endDoc();
    }
    auto doc = pdfpages::open(path_);
    QVERIFY(doc);
    QCOMPARE(doc->numPages(), 3);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(doc->page(i)->text(QRectF()).trimmed(), QStringLiteral("Page %1").arg(i + 1));
}

void TestPrinter::printerThatCannotStart() {
    qprinter_->setOutputFileName(dir_->filePath(QStringLiteral("missing/folder/page.pdf")));
    Printer printer(*qprinter_);
    printer.print(QStringLiteral("rien"));
    printer.newPage();
    printer.endDoc();
    QVERIFY(!QFile::exists(qprinter_->outputFileName()));
}

QTEST_MAIN(TestPrinter)
#include "tst_printer.moc"
