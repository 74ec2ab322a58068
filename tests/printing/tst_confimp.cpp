#include "macro/macropanel.h"
#include "micro/micropanel.h"
#include "platform/canvas.h"
#include "platform/printer.h"
#include "platform/surface.h"
#include "printing/confimp.h"
#include "support/pdfpages.h"
#include "support/standinwindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPageLayout>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

using printing::confimp;

namespace {

// Each illustration printed as a plain block of its own colour, at the main window's sizes.
const QColor MicroColour(0, 160, 0);
const QColor DiagramColour(0, 0, 220);
const QColor MacroColour(220, 120, 0);
constexpr QSize MicroSize(330, 340);
constexpr QSize DiagramSize(60, 378);
constexpr QSize MacroSize(376, 238);
constexpr double Margin = 400; // 20 points, in twips
constexpr double Dpi = 144;    // 10 twips to the dot

std::unique_ptr<platform::Surface> block(QSize size, const QColor& colour) {
    auto s = std::make_unique<platform::Surface>();
    s->resize(size);
    s->setBackColor(colour);
    s->setPaintHandler([](platform::Canvas&) {});
    return s;
}

// Runs `answer` on the next modal window that is not `owner` once it is open.
void whenModal(QWidget* owner, std::function<void(QWidget*)> answer) {
    QTimer::singleShot(0, [owner, answer] {
        QWidget* w = QApplication::activeModalWidget();
        if (!w || w == owner) {
            whenModal(owner, answer);
            return;
        }
        answer(w);
    });
}

} // namespace

class TestConfimp : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void controls_data();
    void controls();
    void copiesLabelFollowsTheSpin();
    void emptyChoice_data();
    void emptyChoice();
    void layouts_data();
    void layouts();
    void copies_data();
    void copies();
    void preview();
    void printerDialog();
    void noPrinterAsksForOne();
    void realPicturesPrintAsDrawings();

private:
    void tick(std::initializer_list<int> boxes);
    std::unique_ptr<Poppler::Document> printed();

    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<QPrinter> printer_;
    std::unique_ptr<platform::Surface> micro_, diagram_, macro_;
    std::unique_ptr<confimp> w_;
};

void TestConfimp::init() {
    dir_ = std::make_unique<QTemporaryDir>();
    printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer_->setOutputFormat(QPrinter::PdfFormat);
    printer_->setOutputFileName(dir_->filePath(QStringLiteral("page.pdf")));
    printer_->setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                        QMarginsF(20, 20, 20, 20), QPageLayout::Point));
    micro_ = block(MicroSize, MicroColour);
    diagram_ = block(DiagramSize, DiagramColour);
    macro_ = block(MacroSize, MacroColour);
    w_ = std::make_unique<confimp>(
        printing::Illustrations{micro_.get(), diagram_.get(), macro_.get()}, *printer_, nullptr);
    w_->show();
}

void TestConfimp::cleanup() {
    w_.reset();
    printer_.reset();
    dir_.reset();
}

void TestConfimp::tick(std::initializer_list<int> boxes) {
    for (int i : boxes)
        w_->findChild<QCheckBox*>(QStringLiteral("Chec_%1").arg(i))->setChecked(true);
}

std::unique_ptr<Poppler::Document> TestConfimp::printed() {
    return pdfpages::open(printer_->outputFileName());
}

void TestConfimp::controls_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::newRow("Frame1") << "Frame1"
                            << "Options";
    QTest::newRow("Label5") << "Label5"
                            << "Titre de la page :";
    QTest::newRow("Text1") << "Text1"
                           << "Orbitex - Thermivo";
    QTest::newRow("Chec_0") << "Chec_0"
                            << "L'illustration de l'aspect microscopique";
    QTest::newRow("Chec_1") << "Chec_1"
                            << "Le bilan énergétique de l'aspect microscopique";
    QTest::newRow("Chec_2") << "Chec_2"
                            << "L'illustration de l'aspect macroscopique";
    QTest::newRow("Chec_3") << "Chec_3"
                            << "Le tableau de valeurs";
    QTest::newRow("Label3") << "Label3"
                            << "Nombre d'exemplaires :";
    QTest::newRow("Label4") << "Label4"
                            << "1";
    QTest::newRow("defaut") << "defaut"
                            << "page.pdf";
    QTest::newRow("Command2") << "Command2"
                              << "&Imprimantes";
    QTest::newRow("Command1") << "Command1"
                              << "&OK";
    QTest::newRow("Command3") << "Command3"
                              << "&Annuler";
    QTest::newRow("Label1") << "Label1"
                            << "Veuillez patienter quelques instants...";
}

void TestConfimp::controls() {
    QFETCH(QString, name);
    QFETCH(QString, text);
    QCOMPARE(w_->windowTitle(), QStringLiteral("Imprimer"));
    QWidget* c = w_->findChild<QWidget*>(name);
    QVERIFY(c);
    QString shown;
    if (auto* b = qobject_cast<QAbstractButton*>(c))
        shown = b->text();
    else if (auto* l = qobject_cast<QLabel*>(c))
        shown = l->text();
    else if (auto* e = qobject_cast<QLineEdit*>(c))
        shown = e->text();
    else if (auto* g = qobject_cast<QGroupBox*>(c))
        shown = g->title();
    QCOMPARE(shown, text);
    if (auto* box = qobject_cast<QCheckBox*>(c)) {
        QVERIFY(!box->isChecked());
        QCOMPARE(box->isEnabled(), name != QLatin1String("Chec_3"));
    }
    // Only the waiting message is hidden at first.
    QCOMPARE(c->isVisible(), name != QLatin1String("Label1"));
    QVERIFY(!w_->findChild<QWidget*>(QStringLiteral("Frame2"))->isVisible());
}

void TestConfimp::copiesLabelFollowsTheSpin() {
    auto* spin = w_->findChild<QSpinBox*>(QStringLiteral("UpDown1"));
    auto* label = w_->findChild<QLabel*>(QStringLiteral("Label4"));
    QCOMPARE(spin->minimum(), 1);
    QCOMPARE(spin->maximum(), 99);
    QCOMPARE(spin->value(), 1);
    spin->stepUp();
    QCOMPARE(label->text(), QStringLiteral("2"));
    spin->setValue(150);
    QCOMPARE(label->text(), QStringLiteral("99"));
}

void TestConfimp::emptyChoice_data() {
    QTest::addColumn<bool>("tableOnly");
    QTest::newRow("nothing ticked") << false;
    QTest::newRow("only the value table") << true;
}

void TestConfimp::emptyChoice() {
    QFETCH(bool, tableOnly);
    if (tableOnly)
        tick({3});
    QString title, text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    whenModal(w_.get(), [&](QWidget* m) {
        auto* box = qobject_cast<QMessageBox*>(m);
        QVERIFY(box);
        title = box->windowTitle();
        text = box->text();
        icon = box->icon();
        box->button(QMessageBox::Ok)->click();
    });
    QTest::mouseClick(w_->findChild<QPushButton*>(QStringLiteral("Command1")), Qt::LeftButton);
    QCOMPARE(title, QStringLiteral("Erreur sélection"));
    QCOMPARE(text, QStringLiteral("Il faut choisir au moins une illustration à imprimer"));
    QCOMPARE(icon, QMessageBox::Critical);
    QVERIFY(w_->isVisible());
    QVERIFY(w_->findChild<QWidget*>(QStringLiteral("Frame1"))->isVisible());
    QVERIFY(!QFile::exists(printer_->outputFileName()));
}

void TestConfimp::layouts_data() {
    // Ticked boxes, then the expected top left of each picture in twips from the printable
    // area's top left, on A4 less 20-point margins: W = 11100, H = 16040.
    // -1 marks a picture that is not printed.
    QTest::addColumn<QList<int>>("ticked");
    QTest::addColumn<QList<double>>("expected"); // micro x, y, diagram x, y, macro x, y
    const double w = 11100, h = 16040;
    const double left = w / 20, top = h / 20, beside = 0.7 * w;
    const double microCentre = (w - 330 * 15) / 2, diagramCentre = (w - 60 * 15) / 2,
                 macroCentre = (w - 376 * 15) / 2, belowMicro = top + 340 * 15;
    QTest::newRow("micro only") << QList<int>{0} << QList<double>{microCentre, top, -1, -1, -1, -1};
    QTest::newRow("diagram only") << QList<int>{1}
                                  << QList<double>{-1, -1, diagramCentre, top, -1, -1};
    QTest::newRow("macro only") << QList<int>{2} << QList<double>{-1, -1, -1, -1, macroCentre, top};
    QTest::newRow("micro and diagram")
        << QList<int>{0, 1} << QList<double>{left, top, beside, top, -1, -1};
    QTest::newRow("micro and macro")
        << QList<int>{0, 2} << QList<double>{microCentre, top, -1, -1, macroCentre, belowMicro};
    QTest::newRow("diagram and macro")
        << QList<int>{1, 2} << QList<double>{-1, -1, beside, top, macroCentre, top};
    QTest::newRow("all three") << QList<int>{0, 1, 2, 3}
                               << QList<double>{left, top, beside, top, left, belowMicro};
}

void TestConfimp::layouts() {
    QFETCH(QList<int>, ticked);
    QFETCH(QList<double>, expected);
    for (int i : ticked)
        w_->findChild<QCheckBox*>(QStringLiteral("Chec_%1").arg(i))->setChecked(true);
    QTest::mouseClick(w_->findChild<QPushButton*>(QStringLiteral("Command1")), Qt::LeftButton);
    QCOMPARE(w_->result(), int(QDialog::Accepted));
    QVERIFY(!w_->isVisible());

    auto doc = printed();
    QVERIFY(doc);
    QCOMPARE(doc->numPages(), 1);
    platform::Printer probe(*printer_);
    QVERIFY(std::abs(probe.scaleWidth() - 11100) <= 2);
    QVERIFY(std::abs(probe.scaleHeight() - 16040) <= 2);

    const QImage page = pdfpages::render(*doc, 0, Dpi);
    const struct {
        QColor colour;
        QSize size;
    } pictures[3] = {
        {MicroColour, MicroSize}, {DiagramColour, DiagramSize}, {MacroColour, MacroSize}};
    for (int i = 0; i < 3; ++i) {
        const QRect box = pdfpages::boxOf(page, pictures[i].colour);
        const double x = expected[2 * i], y = expected[2 * i + 1];
        if (x < 0) {
            QVERIFY2(box.isNull(), qPrintable(QString::number(i)));
            continue;
        }
        const QRectF want(pdfpages::pixels(Margin + x, Dpi), pdfpages::pixels(Margin + y, Dpi),
                          pdfpages::pixels(pictures[i].size.width() * 15, Dpi),
                          pdfpages::pixels(pictures[i].size.height() * 15, Dpi));
        const auto near = [](double a, double b) { return std::abs(a - b) <= 1.5; };
        QVERIFY2(near(box.left(), want.left()) && near(box.top(), want.top()) &&
                     near(box.right() + 1, want.right()) && near(box.bottom() + 1, want.bottom()),
                 qPrintable(QStringLiteral("picture %1 at %2,%3 %4x%5, expected %6,%7 %8x%9")
                                .arg(i)
                                .arg(box.left())
                                .arg(box.top())
                                .arg(box.width())
                                .arg(box.height())
                                .arg(want.left())
                                .arg(want.top())
                                .arg(want.width())
                                .arg(want.height())));
    }
    if (ticked == QList<int>{1, 2}) {
        // Where the two meet, the system picture, printed last, lies on top.
        const int x = static_cast<int>(pdfpages::pixels(Margin + 0.7 * 11100 + 100, Dpi));
        const int y = static_cast<int>(pdfpages::pixels(Margin + 802 + 100, Dpi));
        QCOMPARE(page.pixelColor(x, y), MacroColour);
    }

    // The title, Arial 12 bold, at the top left of the printable area.
    std::unique_ptr<Poppler::Page> p = doc->page(0);
    const auto words = p->textList();
    QVERIFY(words.size() >= 3);
    QCOMPARE(words[0]->text(), QStringLiteral("Orbitex"));
    QCOMPARE(words[1]->text(), QStringLiteral("-"));
    QCOMPARE(words[2]->text(), QStringLiteral("Thermivo"));
    QVERIFY(std::abs(words[0]->boundingBox().left() - Margin / 20) < 1.5);
    QVERIFY(std::abs(words[0]->boundingBox().top() - Margin / 20) < 4);
}

void TestConfimp::copies_data() {
    QTest::addColumn<int>("copies");
    QTest::newRow("1") << 1;
    QTest::newRow("3") << 3;
}

void TestConfimp::copies() {
    QFETCH(int, copies);
    tick({1});
    w_->findChild<QSpinBox*>(QStringLiteral("UpDown1"))->setValue(copies);
    w_->findChild<QLineEdit*>(QStringLiteral("Text1"))->setText(QStringLiteral("Fiche 2nde B"));
    w_->Command1_Click();
    // The waiting message replaced the choices and buttons.
    QVERIFY(w_->findChild<QWidget*>(QStringLiteral("Frame2"))->isVisibleTo(w_.get()));
    for (const char* hidden : {"Frame1", "Command1", "Command2", "Command3"})
        QVERIFY(!w_->findChild<QWidget*>(QLatin1String(hidden))->isVisibleTo(w_.get()));
    auto doc = printed();
    QVERIFY(doc);
    QCOMPARE(doc->numPages(), copies);
    for (int i = 0; i < copies; ++i) {
        QCOMPARE(doc->page(i)->text(QRectF()).trimmed(), QStringLiteral("Fiche 2nde B"));
        QVERIFY(!pdfpages::boxOf(pdfpages::render(*doc, i, 36), DiagramColour).isNull());
    }
}

void TestConfimp::preview() {
    tick({0, 2});
    w_->findChild<QSpinBox*>(QStringLiteral("UpDown1"))->setValue(2);
    int pages = -1;
    QString title;
    whenModal(w_.get(), [&](QWidget* m) {
        auto* dialog = qobject_cast<QPrintPreviewDialog*>(m);
        QVERIFY(dialog);
        title = dialog->windowTitle();
        auto* view = dialog->findChild<QPrintPreviewWidget*>();
        QVERIFY(view);
        pages = view->pageCount();
        dialog->reject();
    });
    QTest::mouseClick(w_->findChild<QPushButton*>(QStringLiteral("Apercu")), Qt::LeftButton);
    QCOMPARE(pages, 2);
    // Looking at the page prints nothing and leaves the window as it was.
    QVERIFY(w_->isVisible());
    QVERIFY(!QFile::exists(printer_->outputFileName()));
}

void TestConfimp::printerDialog() {
    bool opened = false;
    whenModal(w_.get(), [&](QWidget* m) {
        opened = qobject_cast<QPrintDialog*>(m) != nullptr;
        printer_->setOutputFileName(dir_->filePath(QStringLiteral("autre.pdf")));
        qobject_cast<QDialog*>(m)->reject();
    });
    QTest::mouseClick(w_->findChild<QPushButton*>(QStringLiteral("Command2")), Qt::LeftButton);
    QVERIFY(opened);
    // The name shown follows the printer.
    QCOMPARE(w_->findChild<QLineEdit*>(QStringLiteral("defaut"))->text(),
             QStringLiteral("autre.pdf"));
}

void TestConfimp::noPrinterAsksForOne() {
    // A computer without printers, before any file was chosen.
    printer_->setOutputFileName(QString());
    tick({0});
    bool asked = false;
    whenModal(w_.get(), [&](QWidget* m) {
        asked = qobject_cast<QPrintDialog*>(m) != nullptr;
        qobject_cast<QDialog*>(m)->reject();
    });
    w_->Command1_Click();
    QVERIFY(asked);
    QVERIFY(w_->isVisible());
    QVERIFY(w_->findChild<QWidget*>(QStringLiteral("Frame1"))->isVisible());
}

void TestConfimp::realPicturesPrintAsDrawings() {
    StandInWindow main;
    MicroPanel micro(main.ctx, nullptr);
    MacroPanel macro(main.ctx, nullptr);
    macro.frame2()->setGeometry(4, 20, 452, 386);
    main.window->show();
    macro.prepapic4();
    macro.majqant();
    std::int16_t reaction = 1;
    micro.animicro(reaction);
    w_ = std::make_unique<confimp>(
        printing::Illustrations{micro.picmicro(), micro.picture2(), macro.picture4()}, *printer_,
        main.window.get());
    tick({0, 1, 2});
    w_->Command1_Click();
    auto doc = printed();
    QVERIFY(doc);
    // The system picture's captions are text on the page, not dots of a screen image.
    const QString text = doc->page(0)->text(QRectF());
    for (const char* caption : {"Système ouvert", "Milieu extérieur", "Température"})
        QVERIFY2(text.contains(QString::fromUtf8(caption)), caption);
    w_.reset(); // a child of the stand-in window, which goes first
}

QTEST_MAIN(TestConfimp)
#include "tst_confimp.moc"
