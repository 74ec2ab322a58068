#include "platform/richtext.h"
#include "platform/rtfreader.h"
#include "support/rtfdescribe.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

using platform::rtf::Document;
using rtftest::describe;

namespace {

QByteArray dataFile(const QString& name) {
    QFile f(QStringLiteral(THERMIVO_TEST_DATA "/rtf/") + name);
    if (!f.open(QIODevice::ReadOnly))
        qFatal("missing test file %s", qPrintable(name));
    return f.readAll();
}

// The Qt properties a character format sets, as a short text.
QString qtChar(const QTextCharFormat& f) {
    QStringList a;
    if (f.hasProperty(QTextFormat::FontFamilies))
        a << QStringLiteral("fam=") + f.fontFamilies().toStringList().value(0);
    if (f.hasProperty(QTextFormat::FontPointSize))
        a << QStringLiteral("pt=%1").arg(f.fontPointSize());
    if (f.fontWeight() == QFont::Bold)
        a << QStringLiteral("b");
    if (f.fontItalic())
        a << QStringLiteral("i");
    if (f.fontUnderline())
        a << QStringLiteral("u");
    if (f.fontStrikeOut())
        a << QStringLiteral("s");
    if (f.verticalAlignment() == QTextCharFormat::AlignSuperScript)
        a << QStringLiteral("super");
    if (f.verticalAlignment() == QTextCharFormat::AlignSubScript)
        a << QStringLiteral("sub");
    if (f.hasProperty(QTextFormat::ForegroundBrush))
        a << QStringLiteral("c=") + f.foreground().color().name();
    if (f.hasProperty(QTextFormat::BackgroundBrush))
        a << QStringLiteral("h=") + f.background().color().name();
    return a.join(QLatin1Char(' '));
}

QString qtBlock(const QTextBlockFormat& b) {
    QStringList a;
    const Qt::Alignment h = b.alignment() & Qt::AlignHorizontal_Mask;
    a << (h == Qt::AlignHCenter   ? QStringLiteral("center")
          : h == Qt::AlignRight   ? QStringLiteral("right")
          : h == Qt::AlignJustify ? QStringLiteral("justify")
                                  : QStringLiteral("left"));
    const std::pair<const char*, double> values[] = {{"lm", b.leftMargin()},
                                                     {"rm", b.rightMargin()},
                                                     {"ti", b.textIndent()},
                                                     {"tm", b.topMargin()},
                                                     {"bm", b.bottomMargin()}};
    for (const auto& [name, v] : values)
        if (v != 0)
            a << QStringLiteral("%1=%2").arg(QLatin1String(name)).arg(v);
    for (const QTextOption::Tab& t : b.tabPositions())
        a << QStringLiteral("tab=%1%2")
                 .arg(t.position)
                 .arg(QLatin1String(t.type == QTextOption::RightTab       ? "R"
                                    : t.type == QTextOption::CenterTab    ? "C"
                                    : t.type == QTextOption::DelimiterTab ? "D"
                                                                          : "L"));
    return a.join(QLatin1Char(' '));
}

QTextCursor cursorAt(QTextDocument& doc, const QString& needle) {
    const int at = static_cast<int>(doc.toPlainText().indexOf(needle));
    QTextCursor c(&doc);
    c.setPosition(at + 1);
    return c;
}

// Lowest and highest rows holding ink in a column range of the document drawn on white.
std::pair<int, int> inkRows(QTextDocument& doc, int fromX, int toX) {
    QImage img(300, 120, QImage::Format_RGB32);
    img.fill(Qt::white);
    QPainter p(&img);
    doc.drawContents(&p);
    p.end();
    int top = img.height(), bottom = -1;
    for (int y = 0; y < img.height(); ++y)
        for (int x = fromX; x < toX; ++x)
            if (qGray(img.pixel(x, y)) < 128) {
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
    return {top, bottom};
}

} // namespace

class TestRichText : public QObject {
    Q_OBJECT
private slots:
    void toTextDocument_data();
    void toTextDocument();
    void pictures();
    void modelRoundTrip_data();
    void modelRoundTrip();
    void randomDocumentsRoundTrip();
    void documentWrittenByCode();
    void pastedPicture();
    void subscriptsAreDrawnLowered();
    void listTextLinesUp();
    void loadIsNotAnEdit();
    void scrollBarFollowsTheLength();
    void filesInAndOut();
    void printing();
};

void TestRichText::toTextDocument_data() {
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("needle");
    QTest::addColumn<QString>("charFormat");
    QTest::addColumn<QString>("blockFormat");

    const QByteArray head =
        R"({\rtf1\ansi{\fonttbl{\f0 Arial;}{\f1\fcharset2 Symbol;}{\f2 Times New Roman;}}{\colortbl;\red0\green0\blue200;\red255\green255\blue0;})";
    QTest::newRow("subscript") << head + R"(\f0\fs20 CO\sub 2\nosupersub  x})"
                               << "2"
                               << "fam=Liberation Sans pt=10 sub"
                               << "left";
    QTest::newRow("superscript by offset") << head + R"(\f0 mol\up6 -1\up0 })"
                                           << "-1"
                                           << "fam=Liberation Sans pt=12 super"
                                           << "left";
    QTest::newRow("Symbol delta") << head + R"(\f1 D\f0 H})"
                                  << "Δ"
                                  << "fam=Liberation Sans pt=12"
                                  << "left";
    QTest::newRow("other font kept first") << head + R"(\f2 t})"
                                           << "t"
                                           << "fam=Times New Roman pt=12"
                                           << "left";
    QTest::newRow("bold italic underline strike") << head + R"(\b\i\ul\strike w})"
                                                  << "w"
                                                  << "pt=12 b i u s"
                                                  << "left";
    QTest::newRow("colour and highlight") << head + R"(\cf1\highlight2 c})"
                                          << "c"
                                          << "pt=12 c=#0000c8 h=#ffff00"
                                          << "left";
    QTest::newRow("centred, indents in twips")
        << head + R"(\pard\qc\li300\ri45\fi-150\sb60\sa120 p\par})"
        << "p"
        << "pt=12"
        << "center lm=20 rm=3 ti=-10 tm=4 bm=8 tab=10L"; // the hanging indent is a stop
    QTest::newRow("tab stops from the indent")
        << head + R"(\pard\li300\tx720\tqr\tx3000\tqc\tx1500\tqdec\tx4500 a\tab b\par})"
        << "a"
        << "pt=12"
        << "left lm=20 tab=28L tab=80C tab=180R tab=280D";
    QTest::newRow("explicit stop at a hanging indent not doubled")
        << head + R"(\pard\li360\fi-360\tx360\tx1080 a\tab b\par})"
        << "a"
        << "pt=12"
        << "left lm=24 ti=-24 tab=24L tab=72L";
    QTest::newRow("right and justified") << head + R"(\pard\qr r\par\qj j\par})"
                                         << "j"
                                         << "pt=12"
                                         << "justify";
}

void TestRichText::toTextDocument() {
    QFETCH(QByteArray, rtf);
    QFETCH(QString, needle);
    QFETCH(QString, charFormat);
    QFETCH(QString, blockFormat);
    QTextDocument doc;
    platform::setRtf(doc, rtf);
    const QTextCursor c = cursorAt(doc, needle);
    QCOMPARE(qtChar(c.charFormat()), charFormat);
    QCOMPARE(qtBlock(c.blockFormat()), blockFormat);
}

void TestRichText::pictures() {
    QTextDocument doc;
    const QByteArray png = dataFile(QStringLiteral("flamme.png")).toHex();
    QTest::ignoreMessage(QtWarningMsg, "JPEG datastream contains no image");
    platform::setRtf(doc, R"({\rtf1 a{\pict\pngblip\picw96\pich64\picwgoal2160\pichgoal1440 )" +
                              png +
                              R"(}b{\pict\wmetafile8\picwgoal900\pichgoal450 0100}{\pict\jpegblip )"
                              R"(\picwgoal300\pichgoal300 ffd8}})");
    QStringList seen;
    QStringList names;
    for (auto it = doc.begin().begin(); !it.atEnd(); ++it) {
        const QTextCharFormat cf = it.fragment().charFormat();
        if (!cf.isImageFormat())
            continue;
        const QTextImageFormat f = cf.toImageFormat();
        const QImage img =
            doc.resource(QTextDocument::ImageResource, QUrl(f.name())).value<QImage>();
        seen << QStringLiteral("%1x%2 image %3x%4")
                    .arg(f.width())
                    .arg(f.height())
                    .arg(img.width())
                    .arg(img.height());
        names << f.name();
    }
    // The PNG is shown at its wanted size; the metafile and the broken JPEG as grey
    // placeholders of theirs.
    QCOMPARE(seen, (QStringList{"144x96 image 96x64", "60x30 image 60x30", "20x20 image 20x20"}));
    QCOMPARE(doc.toPlainText(), QStringLiteral("a\uFFFCb\uFFFC\uFFFC"));
    const QImage flame =
        doc.resource(QTextDocument::ImageResource, QUrl(names.first())).value<QImage>();
    QImage expected;
    QVERIFY(expected.loadFromData(dataFile(QStringLiteral("flamme.png"))));
    QCOMPARE(flame.convertToFormat(QImage::Format_RGB32),
             expected.convertToFormat(QImage::Format_RGB32));
}

void TestRichText::modelRoundTrip_data() {
    QTest::addColumn<QByteArray>("rtf");
    for (const char* name : {"pandoc.rtf", "libreoffice.rtf", "wordpad.rtf", "word.rtf"})
        QTest::newRow(name) << dataFile(QLatin1String(name));
    QTest::newRow("characters") << QByteArray(
        R"({\rtf1{\fonttbl{\f0 Arial;}}\f0 a\~b\-c\_d e\line f\tab g \u8594?\par\par})");
}

void TestRichText::modelRoundTrip() {
    // What the reader makes of a file survives the text document unchanged, and so does the
    // RTF written from the text document.
    QFETCH(QByteArray, rtf);
    const Document model = platform::rtf::read(rtf);
    QTextDocument doc;
    platform::fillTextDocument(doc, model);
    const Document back = platform::textDocumentModel(doc);
    QCOMPARE(describe(back), describe(model));
    QVERIFY(back == model);
    QVERIFY(platform::rtf::read(platform::toRtf(doc)) == model);
}

void TestRichText::randomDocumentsRoundTrip() {
    // Every model the reader makes comes back unchanged from a text document, but for the
    // fonts it leaves to the default font: they come back as that font.
    QRandomGenerator rng(2024);
    QTextDocument doc;
    const QString defaultFamily = doc.defaultFont().families().value(0);
    for (int i = 0; i < 300; ++i) {
        const QByteArray in = "{\\rtf1 " + rtftest::jumble(rng, 50);
        Document model = platform::rtf::read(in);
        if (model.paragraphs.empty())
            continue;
        platform::fillTextDocument(doc, model);
        for (platform::rtf::Paragraph& p : model.paragraphs) {
            if (p.mark.font.isEmpty())
                p.mark.font = defaultFamily;
            for (platform::rtf::Run& r : p.runs)
                if (r.format.font.isEmpty())
                    r.format.font = defaultFamily;
        }
        QVERIFY2(platform::textDocumentModel(doc) == model, in.constData());
    }
}

void TestRichText::documentWrittenByCode() {
    // Built as the program builds its welcome text: families, sizes and colours set on the
    // formats, paragraph indents in pixels.
    QTextDocument doc;
    QTextCursor cur(&doc);
    QTextBlockFormat title;
    title.setAlignment(Qt::AlignHCenter);
    QTextCharFormat big;
    big.setFontFamilies({QStringLiteral("Arial"), QStringLiteral("Liberation Sans")});
    big.setFontPointSize(18);
    big.setForeground(QColor(0, 0, 200));
    cur.setBlockFormat(title);
    cur.insertText(QStringLiteral("Thermivo"), big);
    QTextBlockFormat body;
    body.setLeftMargin(20.0 / 15.0);
    QTextCharFormat normal = big;
    normal.setFontPointSize(10);
    normal.setForeground(QColor(0, 0, 0));
    QTextCharFormat sub = normal;
    sub.setVerticalAlignment(QTextCharFormat::AlignSubScript);
    cur.insertBlock(body, normal);
    cur.insertText(QStringLiteral("H"), normal);
    cur.insertText(QStringLiteral("2"), sub);
    cur.insertText(QStringLiteral("O – Δ"), normal);

    const Document model = platform::textDocumentModel(doc);
    QCOMPARE(describe(model),
             QStringLiteral("[qc]{f=Arial fs=36 c=0000c8}Thermivo¶[li=20]{f=Arial fs=20 "
                            "c=000000}H|{f=Arial fs=20 sub c=000000}2|{f=Arial fs=20 "
                            "c=000000}O – Δ"));
    QTextDocument again;
    platform::setRtf(again, platform::toRtf(doc));
    QVERIFY(platform::textDocumentModel(again) == model);
    QCOMPARE(again.toPlainText(), doc.toPlainText());
}

void TestRichText::pastedPicture() {
    // A picture that did not come from RTF is written as PNG at the size it is shown.
    QTextDocument doc;
    QImage img(30, 20, QImage::Format_RGB32);
    img.fill(QColor(10, 200, 30));
    doc.addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("pasted")), img);
    QTextImageFormat f;
    f.setName(QStringLiteral("pasted"));
    f.setWidth(60);
    f.setHeight(40);
    QTextCursor(&doc).insertImage(f);

    const QByteArray rtf = platform::toRtf(doc);
    QVERIFY(rtf.contains("\\pngblip\\picw1588\\pich1058\\picwgoal900\\pichgoal600"));
    const Document back = platform::rtf::read(rtf);
    const platform::rtf::Picture& pict = *back.paragraphs.at(0).runs.at(0).picture;
    QImage decoded;
    QVERIFY(decoded.loadFromData(pict.data, "PNG"));
    QCOMPARE(decoded.convertToFormat(QImage::Format_RGB32), img);
}

void TestRichText::subscriptsAreDrawnLowered() {
    const auto draw = [](const QByteArray& rtf) {
        QTextDocument doc;
        doc.setDocumentMargin(0);
        platform::setRtf(doc, rtf);
        (void)doc.size(); // lays the document out
        // The digit's column: after the "x", found from the layout.
        const QTextLine line = doc.firstBlock().layout()->lineAt(0);
        const int from = static_cast<int>(line.cursorToX(1)) + 1;
        const int to = static_cast<int>(line.cursorToX(2)) - 1;
        return inkRows(doc, from, to);
    };
    const auto normal = draw(R"({\rtf1\fs40 x2})");
    const auto sub = draw(R"({\rtf1\fs40 x\sub 2})");
    const auto super = draw(R"({\rtf1\fs40 x\super 2})");
    QVERIFY(normal.second > 0);
    QVERIFY2(sub.second > normal.second, "subscript reaches below the digit's baseline");
    QVERIFY2(super.first < normal.first, "superscript rises above the digit's top");
    QVERIFY(sub.second - sub.first < normal.second - normal.first); // and both are smaller
}

void TestRichText::listTextLinesUp() {
    // Word's lists: a bullet in the hanging indent, a tab, the text at the left indent.
    QTextDocument doc;
    doc.setDocumentMargin(0);
    platform::setRtf(
        doc, R"({\rtf1\pard\li720\fi-360 \bullet\tab item\par\pard\li300\tx1800 a\tab b\par})");
    (void)doc.size();
    const QTextLine bullet = doc.firstBlock().layout()->lineAt(0);
    QCOMPARE(bullet.cursorToX(0), 24.0); // 360 twips
    QCOMPARE(bullet.cursorToX(2), 48.0); // 720 twips
    const QTextLine tabbed = doc.firstBlock().next().layout()->lineAt(0);
    QCOMPARE(tabbed.cursorToX(2), 120.0); // 1800 twips from the margin, whatever the indent
}

void TestRichText::loadIsNotAnEdit() {
    QTextEdit edit;
    edit.setPlainText(QStringLiteral("before"));
    QSignalSpy changed(&edit, &QTextEdit::textChanged);
    platform::setRichText(edit, R"({\rtf1 CO\sub 2\nosupersub\par suite})");
    QCOMPARE(changed.count(), 0);
    QCOMPARE(edit.toPlainText(), QStringLiteral("CO2\nsuite"));
    QVERIFY(!edit.document()->isUndoAvailable()); // a load cannot be undone into the old text
    QCOMPARE(edit.textCursor().position(), 0);

    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    QTest::keyClicks(&edit, QStringLiteral("x"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(edit.toPlainText(), QStringLiteral("xCO2\nsuite"));
}

void TestRichText::scrollBarFollowsTheLength() {
    // Loads lay the text out with the scroll bar, then give the bar back to the text's length.
    QTextEdit edit;
    edit.resize(311, 436);
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    QByteArray longText = "{\\rtf1 ";
    for (int i = 0; i < 60; ++i)
        longText += "Ligne\\par ";
    for (const auto& [rtf, bar] :
         {std::pair{QByteArray("{\\rtf1 court}"), false}, std::pair{longText + "}", true},
          std::pair{QByteArray("{\\rtf1 court}"), false}}) {
        platform::setRichText(edit, rtf);
        QApplication::processEvents();
        QCOMPARE(edit.verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
        QCOMPARE(edit.verticalScrollBar()->isVisible(), bar);
        QCOMPARE(edit.document()->textWidth(), double(edit.viewport()->width()));
    }
}

void TestRichText::filesInAndOut() {
    QTemporaryDir dir;
    QTextEdit edit;
    const QString source = dir.filePath(QStringLiteral("word.rtf"));
    QVERIFY(QFile::copy(QStringLiteral(THERMIVO_TEST_DATA "/rtf/word.rtf"), source));
    QVERIFY(platform::loadRichText(edit, source));
    const Document loaded = platform::textDocumentModel(*edit.document());

    const QString copy = dir.filePath(QStringLiteral("copie.rtf"));
    QVERIFY(platform::saveRichText(edit, copy));
    QTextEdit other;
    QVERIFY(platform::loadRichText(other, copy));
    QVERIFY(platform::textDocumentModel(*other.document()) == loaded);

    // Failures leave everything as it was.
    QVERIFY(!platform::loadRichText(other, dir.filePath(QStringLiteral("absent.rtf"))));
    QCOMPARE(other.toPlainText(), edit.toPlainText());
    QVERIFY(!platform::saveRichText(edit, dir.path())); // a folder
    QVERIFY(!platform::saveRichText(edit, dir.filePath(QStringLiteral("no/folder/x.rtf"))));
}

void TestRichText::printing() {
    // Pages and pictures of the printed document, read from the PDF it makes.
    QTemporaryDir dir;
    const auto print = [&](const QByteArray& rtf) {
        QTextEdit edit;
        platform::setRichText(edit, rtf);
        const QString pdf = dir.filePath(QStringLiteral("out.pdf"));
        {
            QPdfWriter writer(pdf);
            writer.setPageSize(QPageSize(QPageSize::A4));
            platform::printRichText(edit, writer);
        }
        QFile f(pdf);
        f.open(QIODevice::ReadOnly);
        const QByteArray bytes = f.readAll();
        const qsizetype pages = bytes.count("/Type /Page\n") + bytes.count("/Type /Page ") +
                                bytes.count("/Type /Page/") + bytes.count("/Type /Page>");
        return std::pair{pages, bytes.count("/Subtype /Image")};
    };
    QCOMPARE(print(R"({\rtf1 Une ligne.})"), (std::pair<qsizetype, qsizetype>{1, 0}));
    QByteArray longText = "{\\rtf1\\fs24 ";
    for (int i = 0; i < 120; ++i)
        longText += "Ligne C\\sub 4\\nosupersub H\\sub 10\\nosupersub\\par ";
    // 120 lines of 12 points need three A4 pages; the picture goes along.
    longText += "{\\pict\\pngblip " + dataFile(QStringLiteral("flamme.png")).toHex() + "}}";
    QCOMPARE(print(longText), (std::pair<qsizetype, qsizetype>{3, 1}));
}

QTEST_MAIN(TestRichText)
#include "tst_richtext.moc"
