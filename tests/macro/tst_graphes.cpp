#include "chemistry/catalogue.h"
#include "macro/balance.h"
#include "macro/graphes.h"
#include "macro/macropanel.h"
#include "platform/surface.h"
#include "support/pdfpages.h"
#include "support/pixelprobes.h"
#include "support/standinwindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPageLayout>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

using macro::GraphInput;

namespace {

GraphInput balance(int reaction, float a, float b, bool open) {
    const macro::Stoichiometry nu = *macro::stoichiometry(reaction);
    const chemistry::BondTotals t = chemistry::computeTotals(reaction);
    return {macro::maxAdvancement(a, b, nu), t.broken, t.formed, open};
}

std::unique_ptr<graphes> opened(const GraphInput& input) {
    auto g = std::make_unique<graphes>(input);
    g->show();
    if (!QTest::qWaitForWindowExposed(g.get()))
        return nullptr;
    return g;
}

// "x,y c" probes separated by blanks; c: w white, g QBColor(7), k black, b QBColor(9).
void checkPixels(const QImage& img, const QString& probes) {
    const QMap<QChar, QColor> colours{{'w', QColor(255, 255, 255)},
                                      {'g', QColor(192, 192, 192)},
                                      {'k', QColor(0, 0, 0)},
                                      {'b', QColor(0, 0, 255)}};
    checkProbes(img, probes, colours);
}

// Dark pixels: the ink of the texts.
int inkCount(const QImage& img, const QRect& r) {
    int n = 0;
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x)
            n += qGray(img.pixel(x, y)) < 100;
    return n;
}

// Runs `answer` on the modal window open at the next turn of the event loop, if any. Unlike the
// shared helper it does not wait for one, so a test can also check that none opens.
void whenModal(std::function<void(QWidget*)> answer) {
    QTimer::singleShot(0, [answer] {
        if (QWidget* w = QApplication::activeModalWidget())
            answer(w);
    });
}

} // namespace

class TestGraphes : public QObject {
    Q_OBJECT
private slots:
    void plot_data();
    void plot();
    void table_data();
    void table();
    void shortScreen_data();
    void shortScreen();
    void cursorReadout();
    void titleStrip();
    void printedPlot();
    void copyAndSaveTable();
    void openedFromTheMacroTab();
};

void TestGraphes::plot_data() {
    QTest::addColumn<GraphInput>("input");
    QTest::addColumn<QString>("probes");
    // Methane 1 / 2: five x divisions of 72 pixels, nine energy divisions of 40 pixels; the
    // curve rises 802 × 0,4 pixels per mole.
    QTest::newRow("methane open") << balance(1, 1, 2, true)
                                  << "92,100 g 100,340 g 380,100 g 100,20 g 56,150 w 300,310 w "
                                     // axes and arrow heads, the last points left out
                                     "20,5 k 19,5 w 20,200 k 300,380 k 399,380 k 392,376 k "
                                     "392,384 k 400,380 w "
                                     // curve points at x = 1/12, 1/4 and 5/6 mol, its end
                                     "50,353 b 110,300 b 320,113 b 380,59 b "
                                     // the cross of row 9 at (182, 235,6), ends left out
                                     "180,236 b 184,236 b 185,236 w 182,234 b 182,238 b "
                                     "182,239 w";
    // Isolated: a flat curve on the x axis, crosses every 18 pixels, five divisions of 72.
    QTest::newRow("isolated") << balance(1, 1, 2, false)
                              << "110,380 b 200,380 b 38,378 b 38,382 b 36,380 b 40,380 b "
                                 "38,383 w 100,308 g 100,236 g 100,100 w";
    // X = 0,3: three divisions of 120 pixels; 240,6 kJ of a 250-kJ axis, divisions of 72.
    QTest::newRow("methane 0,3") << balance(1, 0.3F, 1, true)
                                 << "140,100 g 260,100 g 200,100 w 100,308 g 100,236 g "
                                    "380,34 b 378,34 b 380,32 b";
}

void TestGraphes::plot() {
    QFETCH(GraphInput, input);
    QFETCH(QString, probes);
    auto g = opened(input);
    QVERIFY(g);
    QCOMPARE(g->picture1()->size(), QSize(480, 400));
    const QImage img = g->picture1()->image();
    checkPixels(img, probes);
    // The texts: energy legend above the plot, three-line x legend and the axis names.
    QVERIFY(inkCount(img, QRect(30, 0, 150, 18)) > 100);
    QVERIFY(inkCount(img, QRect(400, 330, 80, 14)) > 40);
    QVERIFY(inkCount(img, QRect(400, 358, 80, 14)) > 20);
    QVERIFY(inkCount(img, QRect(400, 383, 12, 14)) > 5); // x
    QVERIFY(inkCount(img, QRect(24, 22, 30, 14)) > 20);  // |ΔE|
    QCOMPARE(inkCount(img, QRect(0, 20, 14, 380)), 0);   // left of the axis: nothing
}

void TestGraphes::table_data() {
    QTest::addColumn<GraphInput>("input");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("last");
    QTest::newRow("methane 1/2") << balance(1, 1, 2, true) << 21 << "  802,0   ";
    QTest::newRow("butane 100000") << balance(4, 100000, 100000, true) << 20 << "39 596 000,0   ";
    QTest::newRow("methane 0,298") << balance(1, 0.298F, 1, true) << 20 << "  228,57   ";
}

void TestGraphes::table() {
    QFETCH(GraphInput, input);
    QFETCH(int, rows);
    QFETCH(QString, last);
    auto g = opened(input);
    QVERIFY(g);
    QTableWidget* t = g->grid();
    QCOMPARE(t->objectName(), QStringLiteral("MSFlexGrid1"));
    QCOMPARE(t->rowCount(), rows);
    QCOMPARE(t->columnCount(), 2);
    QCOMPARE(t->item(0, 0)->text(), QStringLiteral("  0,0   "));
    QCOMPARE(t->item(rows - 1, 1)->text(), last);
    QVERIFY(t->selectedItems().isEmpty());
    // Every cell shows whole: no scroll range, the last cell's text inside the viewport.
    QCOMPARE(t->verticalScrollBar()->maximum(), 0);
    QCOMPARE(t->horizontalScrollBar()->maximum(), 0);
    const QRect lastCell = t->visualRect(t->model()->index(rows - 1, 1));
    QVERIFY(t->viewport()->rect().contains(lastCell));
    QVERIFY(t->fontMetrics().horizontalAdvance(last.trimmed()) < lastCell.width() - 4);
    // Centred under the plot square (x 20 to 380 of Picture1), the header strip on top.
    const int centre = g->picture1()->x() + 200;
    QVERIFY(qAbs(t->x() + t->width() / 2 - centre) <= 1);
    QCOMPARE(g->picture2()->geometry(),
             QRect(t->x(), t->y() - g->picture2()->height(), t->width(), g->picture2()->height()));
    QVERIFY(t->y() > g->picture1()->geometry().bottom());
    QVERIFY(g->rect().contains(t->geometry()));
    // Both headings are drawn, each over its column.
    const QImage header = g->picture2()->image();
    QVERIFY(inkCount(header, QRect(0, 0, t->columnWidth(0), header.height())) > 30);
    QVERIFY(inkCount(header,
                     QRect(t->columnWidth(0) + 2, 0, t->columnWidth(1) - 2, header.height())) > 30);
}

void TestGraphes::shortScreen_data() {
    QTest::addColumn<int>("available");
    QTest::addColumn<bool>("beside");
    QTest::newRow("tall enough: under the plot") << 800 << false;
    QTest::newRow("768-pixel laptop: beside") << 768 << true;
    QTest::newRow("1080 at 150 %: beside") << 720 << true;
    QTest::newRow("1080 at 200 %: beside") << 540 << true;
}

// A screen too low for the table under the plot gets it beside the plot, whole.
void TestGraphes::shortScreen() {
    QFETCH(int, available);
    QFETCH(bool, beside);
    graphes g(balance(1, 1.0f, 2.0f, true));
    g.setAvailableHeight(available);
    g.show();
    QVERIFY(QTest::qWaitForWindowExposed(&g));
    const QTableWidget* t = g.grid();
    QCOMPARE(t->rowCount(), 21);
    QVERIFY(g.height() <= available);
    QVERIFY(g.rect().contains(t->geometry()));
    QCOMPARE(t->verticalScrollBar()->maximum(), 0);
    QCOMPARE(g.picture2()->geometry().bottom() + 1, t->y());
    QCOMPARE(g.picture1()->geometry(), QRect(96, 38, 480, 400));
    if (beside) {
        QVERIFY(t->x() > g.picture1()->geometry().right());
        QCOMPARE(t->y() - g.picture2()->height(), g.picture1()->y());
    } else {
        QVERIFY(t->y() > g.picture1()->geometry().bottom());
        QCOMPARE(g.width(), 584);
    }
    QCOMPARE(g.picture3()->width(), g.width());
}

void TestGraphes::cursorReadout() {
    auto g = opened(balance(1, 1, 2, true));
    QVERIFY(g);
    platform::Surface* p = g->picture1();
    QLabel* l1 = g->label1();
    QLabel* l2 = g->label2();

    // A real move through the window system reaches the handler.
    QTest::mouseMove(p, QPoint(200, 200));
    QTRY_VERIFY(l1->isVisible());
    QCOMPARE(p->cursor().shape(), Qt::CrossCursor);
    QCOMPARE(l1->text(), QStringLiteral("0,50"));
    QCOMPARE(l2->text(), QStringLiteral("450,00"));
    // Label1 centred on the cursor just below the axis; Label2 ends 16 pixels into the plot,
    // centred on the cursor's height.
    QVERIFY(qAbs(l1->x() + l1->width() / 2 - (p->x() + 200)) <= 1);
    QCOMPARE(l1->y(), p->y() + 382);
    QCOMPARE(l2->x() + l2->width(), p->x() + 16);
    QVERIFY(qAbs(l2->y() + l2->height() / 2 - (p->y() + 200)) <= 1);
    QVERIFY(g->grid()->selectedItems().isEmpty());

    // Near a tabulated point: its row is selected.
    g->Picture1_MouseMove(203, 217);
    QCOMPARE(g->grid()->selectionModel()->selectedRows().size(), 1);
    QCOMPARE(g->grid()->selectionModel()->selectedRows().first().row(), 10);
    g->Picture1_MouseMove(23, 377);
    QCOMPARE(g->grid()->selectionModel()->selectedRows().first().row(), 0);

    // The border lines are outside: arrow pointer, no readouts.
    for (const QPoint& at : {QPoint(19, 381), QPoint(381, 200), QPoint(200, 19)}) {
        g->Picture1_MouseMove(200, 200);
        g->Picture1_MouseMove(at.x(), at.y());
        QVERIFY(!l1->isVisible() && !l2->isVisible());
        QCOMPARE(p->cursor().shape(), Qt::ArrowCursor);
    }
    g->Picture1_MouseMove(20, 380);
    QVERIFY(l1->isVisible());
    QCOMPARE(l1->text() + u'|' + l2->text(), QStringLiteral("0,00|0,00"));
    // Leaving the plot for the window hides them too.
    QTest::mouseMove(g.get(), QPoint(10, g->height() - 5));
    QTRY_VERIFY(!l1->isVisible());
}

void TestGraphes::titleStrip() {
    auto g = opened(balance(1, 1, 2, true));
    QVERIFY(g);
    QCOMPARE(g->picture3()->width(), g->width());
    const auto lefts = [&] {
        QList<int> l;
        for (int i = 1; i <= 4; ++i)
            l << g->picture3()->width() - g->image1(i)->x();
        return l;
    };
    QCOMPARE(lefts(), (QList<int>{50, 90, 130, 170}));
    g->resize(g->width() + 100, g->height());
    QCOMPARE(g->picture3()->width(), g->width());
    QCOMPARE(lefts(), (QList<int>{50, 90, 130, 170}));
    // "E(x)" in white at the left end.
    const QImage strip = g->picture3()->image();
    int white = 0;
    for (int y = 0; y < strip.height(); ++y)
        for (int x = 0; x < 60; ++x)
            white += strip.pixelColor(x, y) == QColor(255, 255, 255);
    QVERIFY(white > 40);

    // Copy: the plot's picture on the clipboard.
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    g->image1(3)->click();
    QCOMPARE(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32),
             g->picture1()->image().convertToFormat(QImage::Format_RGB32));

    // Calculator: the keypad opens modally over the graph.
    QString opened;
    whenModal([&](QWidget* w) {
        opened = w->objectName();
        w->close();
    });
    g->image1(4)->click();
    QCOMPARE(opened, QStringLiteral("Machine"));

    // Close.
    QVERIFY(g->isVisible());
    g->image1(1)->click();
    QVERIFY(!g->isVisible());
}

void TestGraphes::printedPlot() {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("graphe.pdf"));
    QPrinter device(QPrinter::HighResolution);
    device.setOutputFormat(QPrinter::PdfFormat);
    device.setOutputFileName(path);
    device.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                     QMarginsF(20, 20, 20, 20), QPageLayout::Point));
    auto g = opened(balance(1, 1, 2, true));
    QVERIFY(g);
    g->setPrinter(&device);
    g->image1(2)->click();

    const auto doc = pdfpages::open(path);
    QVERIFY(doc);
    QCOMPARE(doc->numPages(), 1);
    // The printable area is 555 × 802 points; the 480 × 400-pixel picture (360 × 300 points)
    // stands in its middle, so the plot square's grid (x 20 to 380, y 20 to 380) spans
    // 270 points from (20 + 97,5 + 15, 20 + 251 + 15).
    const double dpi = 144;
    const QImage page = pdfpages::render(*doc, 0, dpi);
    const QRect grid = pdfpages::boxOf(page, QColor(192, 192, 192));
    const double left = pdfpages::pixels((20 + 97.5 + 15) * 20, dpi);
    const double top = pdfpages::pixels((20 + 251 + 15) * 20, dpi);
    const double side = pdfpages::pixels(270 * 20, dpi);
    QVERIFY2(std::abs(grid.left() - left) <= 2 && std::abs(grid.top() - top) <= 2,
             qPrintable(QStringLiteral("%1 %2").arg(grid.left()).arg(grid.top())));
    QVERIFY(std::abs(grid.right() - (left + side)) <= 3);
    // The curve is drawn, not pasted: its blue reaches the top right of the plot square.
    const QRect blue = pdfpages::boxOf(page, QColor(0, 0, 255), 40);
    QVERIFY(std::abs(blue.right() - (left + side)) <= 6);
    QVERIFY(std::abs(blue.bottom() - (top + side)) <= 6);
}

void TestGraphes::copyAndSaveTable() {
    auto g = opened(balance(1, 1, 2, true));
    QVERIFY(g);
    QAction* copy = g->tableMenu()->findChild<QAction*>(QStringLiteral("copyTable"));
    QAction* save = g->tableMenu()->findChild<QAction*>(QStringLiteral("saveTable"));
    QVERIFY(copy && save);
    QCOMPARE(copy->text(), QStringLiteral("Copier le tableau"));
    QCOMPARE(save->text(), QStringLiteral("Enregistrer le tableau…"));
    QCOMPARE(g->grid()->contextMenuPolicy(), Qt::CustomContextMenu);

    copy->trigger();
    const QString text = QGuiApplication::clipboard()->text();
    QVERIFY(
        text.startsWith(QStringLiteral("x (mol)\t|\u0394E| (kJ)\r\n0,0\t0,0\r\n0,05\t40,1\r\n")));
    QVERIFY(text.endsWith(QStringLiteral("\r\n0,95\t761,9\r\n1,0\t802,0\r\n")));
    QCOMPARE(text.count(QStringLiteral("\r\n")), 22);

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("graphe.csv"));
    QVERIFY(g->saveTable(path));
    QFile f(path);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QByteArray bytes = f.readAll();
    QVERIFY(bytes.startsWith("\xEF\xBB\xBFx (mol);|\xCE\x94"
                             "E| (kJ)\r\n0,0;0,0\r\n0,05;40,1\r\n"));
    QVERIFY(bytes.endsWith("\r\n1,0;802,0\r\n"));
    f.close();

    // Through the dialog.
    const QString chosen = dir.filePath(QStringLiteral("choisi"));
    whenModal([&](QWidget* w) {
        auto* d = qobject_cast<QFileDialog*>(w);
        QVERIFY(d);
        d->selectFile(chosen);
        QMetaObject::invokeMethod(d, "accept");
    });
    save->trigger();
    QVERIFY(QFile::exists(chosen + QStringLiteral(".csv")));

    // A folder that does not exist: a message, no file, nothing else changes.
    QString message;
    whenModal([&](QWidget* w) {
        auto* box = qobject_cast<QMessageBox*>(w);
        QVERIFY(box);
        QCOMPARE(box->icon(), QMessageBox::Critical);
        message = box->text();
        box->accept();
    });
    const QString bad = dir.filePath(QStringLiteral("absent/graphe.csv"));
    QVERIFY(!g->saveTable(bad));
    QVERIFY(message.contains(QStringLiteral("n'a pas pu être enregistré")));
    QVERIFY(!QFile::exists(bad));
}

void TestGraphes::openedFromTheMacroTab() {
    StandInWindow w(1, true);
    auto* panel = new MacroPanel(w.ctx, w.window.get());
    w.window->show();
    panel->text1(1)->setText(QStringLiteral("2"));
    panel->Text1_LostFocus(1);
    QVERIFY(panel->command3()->isEnabled());

    const auto openAndRead = [&] {
        QStringList seen;
        whenModal([&](QWidget* m) {
            auto* g = qobject_cast<graphes*>(m);
            if (g && g->graph())
                seen << g->objectName() << QString::number(g->graph()->maxAdvancement())
                     << QString::number(g->graph()->slope())
                     << QString::number(g->grid()->rowCount());
            m->close();
        });
        panel->command3()->click();
        return seen.join(u' ');
    };
    QCOMPARE(openAndRead(), QStringLiteral("graphes 1 802 21"));
    w.ctx.Option1[0]->setChecked(true);
    panel->Option1_Click(0);
    QCOMPARE(openAndRead(), QStringLiteral("graphes 1 0 21"));

    // No advancement, no window.
    panel->text1(0)->setText(QStringLiteral("0"));
    panel->Text1_LostFocus(0);
    QVERIFY(!panel->command3()->isEnabled());
    bool any = false;
    whenModal([&](QWidget* m) {
        any = true;
        m->close();
    });
    panel->Command3_Click();
    QCoreApplication::processEvents();
    QVERIFY(!any);
}

QTEST_MAIN(TestGraphes)
#include "tst_graphes.moc"
