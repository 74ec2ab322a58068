#include "macro/macropanel.h"
#include "mainwindow/copymenu.h"
#include "mainwindow/feuillep.h"
#include "mainwindow/illustrationexport.h"
#include "micro/micropanel.h"
#include "platform/pictureexport.h"
#include "platform/surface.h"
#include "support/pdfpages.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QProcess>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QXmlStreamReader>
#include <functional>
#include <memory>

namespace {

struct SvgContent {
    bool valid = false;
    QString root;
    QSize size;
    QString text;
};

// The SVG as a reader sees it: well-formed XML, its root, its size and all its text.
SvgContent readSvg(const QString& path) {
    SvgContent out;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return out;
    QXmlStreamReader xml(&f);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && out.root.isEmpty()) {
            out.root = xml.name().toString();
            const auto a = xml.attributes();
            // Written as "NNNmm" lengths: keep the numbers, compared in proportion.
            out.size = QSize(int(a.value(QStringLiteral("width"))
                                     .toString()
                                     .remove(QStringLiteral("mm"))
                                     .toDouble() *
                                 1000),
                             int(a.value(QStringLiteral("height"))
                                     .toString()
                                     .remove(QStringLiteral("mm"))
                                     .toDouble() *
                                 1000));
        }
        if (xml.isCharacters())
            out.text += xml.text();
    }
    out.valid = !xml.hasError();
    return out;
}

void whenModal(std::function<bool(QWidget*)> answer) {
    QTimer::singleShot(0, [answer] {
        QWidget* w = QApplication::activeModalWidget();
        if (!w || !answer(w))
            whenModal(answer);
    });
}

} // namespace

class TestExport : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void formats_data();
    void formats();
    void svg_data();
    void svg();
    void pngScales_data();
    void pngScales();
    void pdfPage();
    void unknownFormat();
    void fromCopyMenu();
    void commandLine_data();
    void commandLine();

private:
    platform::Surface* surfaceFor(const QString& what) const;

    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<feuilleP> w_;
};

void TestExport::init() {
    dir_ = std::make_unique<QTemporaryDir>();
    w_ = std::make_unique<feuilleP>();
    w_->setScreenSizeOverride(QSize(1024, 768));
    w_->show();
    QVERIFY(QTest::qWaitForWindowExposed(w_.get()));
}

void TestExport::cleanup() {
    w_->setQuietShutdown(true);
    w_->close();
    w_.reset();
    dir_.reset();
}

platform::Surface* TestExport::surfaceFor(const QString& what) const {
    if (what == QLatin1String("micro"))
        return w_->micro()->picmicro();
    if (what == QLatin1String("diagram"))
        return w_->micro()->picture2();
    return w_->macro()->picture4();
}

void TestExport::formats_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("format");
    using F = platform::ExportFormat;
    QTest::newRow("png") << "/tmp/a.png" << int(F::Png);
    QTest::newRow("PNG upper case") << "/tmp/a.PNG" << int(F::Png);
    QTest::newRow("svg") << "b.svg" << int(F::Svg);
    QTest::newRow("pdf") << "c.d/e.Pdf" << int(F::Pdf);
    QTest::newRow("jpg") << "a.jpg" << int(F::Unknown);
    QTest::newRow("no extension") << "png" << int(F::Unknown);
}

void TestExport::formats() {
    QFETCH(QString, path);
    QFETCH(int, format);
    QCOMPARE(int(platform::exportFormatFor(path)), format);
}

void TestExport::svg_data() {
    QTest::addColumn<QString>("what");
    QTest::addColumn<int>("reaction");
    QTest::addColumn<int>("option");
    QTest::addColumn<QString>("text");
    QTest::newRow("macro isolated") << "macro" << 1 << 0 << QStringLiteral("Système isolé");
    QTest::newRow("macro open") << "macro" << 4 << -1 << QStringLiteral("Système ouvert");
    QTest::newRow("macro outside") << "macro" << 2 << -1 << QStringLiteral("Milieu extérieur");
    QTest::newRow("diagram final") << "diagram" << 4 << -1 << QStringLiteral("10");
}

void TestExport::svg() {
    QFETCH(QString, what);
    QFETCH(int, reaction);
    QFETCH(int, option);
    QFETCH(QString, text);
    w_->selectReaction(reaction);
    if (what == QLatin1String("macro")) {
        w_->selectTab(2);
        if (option >= 0)
            w_->context().Option1[static_cast<std::size_t>(option)]->click();
    } else {
        w_->micro()->Image6_Click();
    }
    const auto which = illustrationFromName(what);
    QVERIFY(which);
    const QString path = dir_->filePath(what + QStringLiteral(".svg"));
    QVERIFY(exportIllustration(*w_, *which, path));
    const SvgContent svg = readSvg(path);
    QVERIFY(svg.valid);
    QCOMPARE(svg.root, QStringLiteral("svg"));
    QVERIFY2(svg.text.contains(text), qPrintable(svg.text.left(300)));
    // The page keeps the picture's proportions.
    const QSize px = surfaceFor(what)->size();
    QVERIFY(svg.size.height() > 0);
    QCOMPARE(qRound(100.0 * svg.size.width() / svg.size.height()),
             qRound(100.0 * px.width() / px.height()));
}

void TestExport::pngScales_data() {
    QTest::addColumn<QString>("what");
    QTest::addColumn<int>("scale");
    for (const char* what : {"micro", "diagram", "macro"})
        for (int scale : platform::ExportScales)
            QTest::addRow("%s %d×", what, scale) << QString::fromLatin1(what) << scale;
}

void TestExport::pngScales() {
    QFETCH(QString, what);
    QFETCH(int, scale);
    w_->selectReaction(4);
    w_->selectTab(what == QLatin1String("macro") ? 2 : 1);
    w_->runAnimationSteps(6);
    platform::Surface* s = surfaceFor(what);
    const QString path = dir_->filePath(QStringLiteral("out.png"));
    QVERIFY(exportIllustration(*w_, *illustrationFromName(what), path, scale));
    QImage png(path);
    QCOMPARE(png.size(), s->size() * scale);
    png = png.convertToFormat(QImage::Format_RGB32);
    const QImage screen = s->image().convertToFormat(QImage::Format_RGB32);
    if (scale == 1) {
        QCOMPARE(png, screen); // the same drawing code gives the same pixels
        return;
    }
    // A drawing made again, not an enlargement: it matches the screen in most places, and it
    // has pixels of its own where an enlargement would only repeat the screen's.
    int same = 0, finer = 0;
    for (int y = 0; y < screen.height(); ++y)
        for (int x = 0; x < screen.width(); ++x) {
            const QRgb c = screen.pixel(x, y);
            if (png.pixel(x * scale, y * scale) == c)
                ++same;
            for (int k = 1; k < scale; ++k)
                if (png.pixel(x * scale + k, y * scale + k) != png.pixel(x * scale, y * scale))
                    ++finer;
        }
    QVERIFY2(same > screen.width() * screen.height() * 9 / 10, qPrintable(QString::number(same)));
    if (what != QLatin1String("diagram"))
        QVERIFY(finer > 0);
}

void TestExport::pdfPage() {
    w_->selectReaction(3);
    w_->selectTab(2);
    const QString path = dir_->filePath(QStringLiteral("macro.pdf"));
    QVERIFY(exportIllustration(*w_, Illustration::Macro, path));
    const auto doc = pdfpages::open(path);
    QVERIFY(doc);
    QCOMPARE(doc->numPages(), 1);
    const QSizeF pt = doc->page(0)->pageSizeF();
    const QSize px = w_->macro()->picture4()->size();
    QVERIFY(qAbs(pt.width() - px.width() * 0.75) < 1);
    QVERIFY(qAbs(pt.height() - px.height() * 0.75) < 1);
    QVERIFY(doc->page(0)->text(QRectF()).contains(QStringLiteral("Système ouvert")));
}

void TestExport::unknownFormat() {
    const QString path = dir_->filePath(QStringLiteral("a.bmp"));
    QVERIFY(!exportIllustration(*w_, Illustration::Micro, path));
    QVERIFY(!QFile::exists(path));
    // No graph without an advancement.
    w_->macro()->text1(0)->setText(QStringLiteral("0"));
    w_->macro()->Text1_LostFocus(0);
    if (!w_->macro()->graphInput())
        QVERIFY(!exportIllustration(*w_, Illustration::Graph, dir_->filePath("g.png")));
}

void TestExport::fromCopyMenu() {
    w_->selectReaction(2);
    w_->selectTab(2);
    const QString path = dir_->filePath(QStringLiteral("chosen"));
    whenModal([](QWidget* w) {
        auto* d = qobject_cast<QDialog*>(w);
        if (!d || d->objectName() != QLatin1String("exportillus"))
            return false;
        auto* what = d->findChild<QComboBox*>(QStringLiteral("exportWhat"));
        auto* scale = d->findChild<QComboBox*>(QStringLiteral("exportScale"));
        what->setCurrentIndex(what->findData(int(Illustration::Macro)));
        scale->setCurrentIndex(scale->findData(2));
        d->accept();
        return true;
    });
    whenModal([path](QWidget* w) {
        auto* d = qobject_cast<QFileDialog*>(w);
        if (!d)
            return false;
        d->selectNameFilter(QStringLiteral("Image PNG (*.png)"));
        d->selectFile(path);
        static_cast<QDialog*>(d)->accept(); // the file dialog's own accept checks the name
        return true;
    });
    auto* item = w_->copyMenu()->menucop()->findChild<QAction*>(QStringLiteral("exporter"));
    QVERIFY(item);
    item->trigger();
    const QImage png(path + QStringLiteral(".png"));
    QCOMPARE(png.size(), w_->macro()->picture4()->size() * 2);
}

void TestExport::commandLine_data() {
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QSize>("size");
    QTest::newRow("micro") << QStringList{"--export", "micro", "--reaction", "4", "--step", "5"}
                           << "m.png" << 0 << QSize(330, 340);
    QTest::newRow("macro 2×") << QStringList{"--export", "macro", "--tab", "2", "--scale", "2"}
                              << "m.png" << 0 << QSize(752, 476);
    QTest::newRow("graph") << QStringList{"--export", "graph", "--reaction", "4"} << "g.svg" << 0
                           << QSize();
    QTest::newRow("unknown what") << QStringList{"--export", "table"} << "t.png" << 2 << QSize();
    QTest::newRow("unknown format") << QStringList{"--export", "micro"} << "t.gif" << 1 << QSize();
}

void TestExport::commandLine() {
    QFETCH(QStringList, args);
    QFETCH(QString, file);
    QFETCH(int, exitCode);
    QFETCH(QSize, size);
    const QString path = dir_->filePath(file);
    QProcess p;
    p.start(QCoreApplication::applicationDirPath() + QStringLiteral("/thermivo"), args << path);
    QVERIFY(p.waitForFinished(60000));
    QCOMPARE(p.exitCode(), exitCode);
    QCOMPARE(QFile::exists(path), exitCode == 0);
    if (size.isValid())
        QCOMPARE(QImage(path).size(), size);
    if (file.endsWith(QLatin1String(".svg")))
        QVERIFY(readSvg(path).valid);
}

QTEST_MAIN(TestExport)
#include "tst_export.moc"
