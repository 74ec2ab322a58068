#include "platform/rtfreader.h"
#include "platform/rtfwriter.h"
#include "platform/symbolencoding.h"
#include "support/rtfdescribe.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTest>

using namespace platform::rtf;
using rtftest::describe;

Q_DECLARE_METATYPE(platform::rtf::Document)

namespace {

QByteArray dataFile(const char* name) {
    QFile f(QStringLiteral(THERMIVO_TEST_DATA "/rtf/") + QLatin1String(name));
    if (!f.open(QIODevice::ReadOnly))
        qFatal("missing test file %s", name);
    return f.readAll();
}

bool hasRun(const Document& d, const QString& described) {
    for (const Paragraph& p : d.paragraphs)
        for (const Run& r : p.runs)
            if (describe(r) == described)
                return true;
    return false;
}

std::vector<const Picture*> pictures(const Document& d) {
    std::vector<const Picture*> out;
    for (const Paragraph& p : d.paragraphs)
        for (const Run& r : p.runs)
            if (r.picture)
                out.push_back(&*r.picture);
    return out;
}

CharFormat arial(int halfPoints = 20) {
    CharFormat f;
    f.font = QStringLiteral("Arial");
    f.halfPoints = halfPoints;
    return f;
}

Run text(const QString& s, CharFormat f) {
    return Run{s, std::move(f), {}};
}

} // namespace

class TestRtf : public QObject {
    Q_OBJECT
private slots:
    void read_data();
    void read();
    void damagedInput_data();
    void damagedInput();
    void largeInputs();
    void paragraphMarks();
    void roundTrip_data();
    void roundTrip();
    void writerOutputIsAscii();
    void randomDocumentsRoundTrip();
    void filesFromOtherPrograms_data();
    void filesFromOtherPrograms();
    void symbolTable();
};

void TestRtf::read_data() {
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("expected");

    // Characters.
    QTest::newRow("Windows-1252 escapes")
        << QByteArray(R"({\rtf1\ansi caf\'e9 \'e0 l\'92\'c9cole \'80\'85})")
        << QStringLiteral("café à l’École €…");
    QTest::newRow("\\u with the default one fallback")
        << QByteArray(R"({\rtf1 \u233?t\u233? \u8594?})") << QStringLiteral("été →");
    QTest::newRow("\\uc2 skips two fallbacks, escapes counted as one")
        << QByteArray(R"({\rtf1\uc2 a\u916\'44\'44b\u916 xyc})") << QStringLiteral("aΔbΔc");
    QTest::newRow("\\uc0 has no fallback")
        << QByteArray(R"({\rtf1\uc0 a\u916 b})") << QStringLiteral("aΔb");
    QTest::newRow("negative \\u, surrogate pair")
        << QByteArray(R"({\rtf1 x\u-10179?\u-8704?y})") << QString::fromUtf8("x\U0001F600y");
    QTest::newRow("\\uc is scoped to its group; a group ends the fallback")
        << QByteArray(R"({\rtf1 {\uc2 \u916\'44\'44}\u916?x{\uc3\u916}abc})")
        << QStringLiteral("ΔΔxΔabc");
    QTest::newRow("escaped specials") << QByteArray(R"({\rtf1 \\ \{ \} a\~b\-c\_d})")
                                      << QStringLiteral("\\ { } a\u00A0b\u00ADc\u2011d");
    QTest::newRow("typographic words")
        << QByteArray(R"({\rtf1 \lquote a\rquote  \ldblquote b\rdblquote \emdash\endash\bullet})")
        << QStringLiteral("‘a’ “b”—–•");
    QTest::newRow("object mark dropped, paragraph separator breaks the line")
        << QByteArray(R"({\rtf1 a\u-4?b\u8233?c\u7?d})") << QStringLiteral("ab\u2028cd");
    QTest::newRow("line ends and literal tab")
        << QByteArray("{\\rtf1 a\r\nb\tc}") << QStringLiteral("ab\tc");

    // Symbol font: by character set or by name, bytes or private-use \u.
    QTest::newRow("Symbol font by charset")
        << QByteArray(
               R"({\rtf1{\fonttbl{\f0 Arial;}{\f1\fcharset2 Symbol;}}\f0 x\f1 D\f0 H \f1\'ae p})")
        << QStringLiteral("{f=Arial}x|{f=Symbol}Δ|{f=Arial}H |{f=Symbol}→ π");
    QTest::newRow("font named Symbol without charset")
        << QByteArray(R"({\rtf1{\fonttbl{\f3 Symbol;}}\f3 Dp\'d6})")
        << QStringLiteral("{f=Symbol}Δπ√");
    QTest::newRow("Symbol private use written by Word")
        << QByteArray(R"({\rtf1{\fonttbl{\f3\fcharset2 Symbol;}}\f3\u-4028\'44\u61552\'70})")
        << QStringLiteral("{f=Symbol}Δπ");
    QTest::newRow("Symbol font keeps \\u of real characters")
        << QByteArray(R"({\rtf1{\fonttbl{\f3\fcharset2 Symbol;}}\f3\u97?})")
        << QStringLiteral("{f=Symbol}a");
    QTest::newRow("Wingdings bullet")
        << QByteArray(R"({\rtf1{\fonttbl{\f2\fcharset2 Wingdings;}}\f2\'a7\'d8\'fc})")
        << QStringLiteral("{f=Wingdings}▪➢✓");
    QTest::newRow("font entries without groups, \\deff, names with escapes")
        << QByteArray(
               R"({\rtf1\deff1{\fonttbl\f0\froman Times;\f1\fswiss Caf\'e9 Sans;}a\f0 b\plain c})")
        << QStringLiteral("{f=Café Sans}a|{f=Times}b|{f=Café Sans}c");
    QTest::newRow("font names drop control characters and semicolons")
        << QByteArray(R"({\rtf1{\fonttbl{\f0 A\'81\'09\u127?\u59?\u8232?B;}}\f0 a})")
        << QStringLiteral("{f=AB}a");
    QTest::newRow("alternative font names skipped")
        << QByteArray(R"({\rtf1{\fonttbl{\f0 Liberation Serif{\*\falt Times New Roman};}}\f0 a})")
        << QStringLiteral("{f=Liberation Serif}a");

    // Character formatting.
    QTest::newRow("sub and super")
        << QByteArray(R"({\rtf1 CO\sub 2\nosupersub  et 10\super -18\nosupersub  J})")
        << QStringLiteral("CO|{sub}2| et 10|{super}-18| J");
    QTest::newRow("\\up and \\dn offsets")
        << QByteArray(R"({\rtf1 H\dn4 2\up0 O kJ\'b7mol\up6 -1\up0 .\dn x\dn0 y})")
        << QStringLiteral("H|{sub}2|O kJ·mol|{super}-1|.|{sub}x|y");
    QTest::newRow("bold italic underline strike on and off")
        << QByteArray(R"({\rtf1\b a\b0\i b\i0\ul c\ulnone\uldb d\ul0\strike e\strike0 f})")
        << QStringLiteral("{b}a|{i}b|{u}cd|{s}e|f");
    QTest::newRow("sizes in half-points") << QByteArray(R"({\rtf1\fs20 a\fs36 b\fs c\fs0 d})")
                                          << QStringLiteral("{fs=20}a|{fs=36}b|cd");
    QTest::newRow("groups restore the formatting")
        << QByteArray(R"({\rtf1\i a{\b b{\ul c}d}e})")
        << QStringLiteral("{i}a|{b i}b|{b i u}c|{b i}d|{i}e");
    QTest::newRow("\\plain resets character formatting")
        << QByteArray(
               R"({\rtf1{\colortbl;\red255\green0\blue0;}\b\i\ul\strike\super\cf1\fs40 a\plain b})")
        << QStringLiteral("{fs=40 b i u s super c=ff0000}a|b");
    QTest::newRow("colours, automatic colour and highlight")
        << QByteArray(
               R"({\rtf1{\colortbl;\red0\green0\blue200;\red255\green255\blue0;}\cf1 a\cf0 b\highlight2 c\highlight0 d\chcbpat2 e\cf9 f})")
        << QStringLiteral("{c=0000c8}a|b|{h=ffff00}c|d|{h=ffff00}ef");
    QTest::newRow("colour table without automatic entry")
        << QByteArray(R"({\rtf1{\colortbl\red0\green0\blue0;\red255\green0\blue0;}\cf0 a\cf1 b})")
        << QStringLiteral("{c=000000}a|{c=ff0000}b");
    QTest::newRow("hidden text left out")
        << QByteArray(R"({\rtf1 a{\v hidden}b\v c\v0 d})") << QStringLiteral("abd");

    // Paragraphs.
    QTest::newRow("\\par \\line \\tab, text after the last \\par")
        << QByteArray(R"({\rtf1 a\par b\line c\tab d\par e})") << QStringLiteral("a¶b\u2028c\td¶e");
    QTest::newRow("empty paragraphs")
        << QByteArray(R"({\rtf1 a\par\par\par b\par})") << QStringLiteral("a¶¶¶b");
    QTest::newRow("control symbol line end is \\par")
        << QByteArray("{\\rtf1 a\\\nb}") << QStringLiteral("a¶b");
    QTest::newRow("alignment and indents")
        << QByteArray(
               R"({\rtf1\pard\qc\li300\ri200\fi-100\sb60\sa120 a\par\qr b\par\qj c\par\pard d\par})")
        << QStringLiteral("[qc li=300 ri=200 fi=-100 sb=60 sa=120]a¶[qr li=300 ri=200 fi=-100 "
                          "sb=60 sa=120]b¶[qj li=300 ri=200 fi=-100 sb=60 sa=120]c¶d");
    QTest::newRow("paragraph format scoped to its group (pandoc)")
        << QByteArray(R"({\rtf1{\pard \qc \sa180 a\par}{\pard \ql \li360 \fi-360 b\par}c\par})")
        << QStringLiteral("[qc sa=180]a¶[li=360 fi=-360]b¶c");
    QTest::newRow("format of the paragraph at its \\par")
        << QByteArray(R"({\rtf1\pard a\qc\par})") << QStringLiteral("[qc]a");
    QTest::newRow("tab stops and their kinds")
        << QByteArray(
               R"({\rtf1\pard\tx720\tqr\tx2880\tqc\tldot\tx4000\tqdec\tx5000\tb6000 a\tab b\par})")
        << QStringLiteral("[tx=720 tqr=2880 tqc=4000 tqdec=5000]a\tb");
    QTest::newRow("section, page and row breaks end a paragraph with text")
        << QByteArray(R"({\rtf1 a\page b\par\sect c\cell d\cell\row})")
        << QStringLiteral("a¶b¶c\td\t");

    // Pictures.
    QTest::newRow("png picture")
        << QByteArray(
               R"({\rtf1 a{\pict\pngblip\picw96\pich64\picwgoal1440\pichgoal960 89504E47 0d0a}b})")
        << QStringLiteral("a|<png 6 1440x960>|b");
    QTest::newRow("jpeg picture scaled, sized in 0.01 mm")
        << QByteArray(
               R"({\rtf1{\pict\jpegblip\picw2540\pich1270\picscalex50\picscaley200 ffd8ffe0}})")
        << QStringLiteral("<jpeg 4 720x1440>");
    QTest::newRow("picture data as \\bin")
        << QByteArray("{\\rtf1{\\pict\\pngblip\\picwgoal15\\pichgoal30\\bin4 {}\\x}z}")
        << QStringLiteral("<png 4 15x30>|z");
    QTest::newRow("metafile kept as data")
        << QByteArray(
               R"({\rtf1{\pict{\*\picprop}\wmetafile8\picw2540\pich1693\picwgoal1440\pichgoal960 0100}})")
        << QStringLiteral("<wmf 2 1440x960>");
    QTest::newRow("picture of no known kind dropped")
        << QByteArray(R"({\rtf1 a{\pict\picw10\pich10 0102}b})") << QStringLiteral("ab");
    QTest::newRow("shppict read, nonshppict skipped")
        << QByteArray(
               R"({\rtf1{\*\shppict{\pict\pngblip\picwgoal150\pichgoal150 0102}}{\nonshppict{\pict\wmetafile8 0304}}})")
        << QStringLiteral("<png 2 150x150>");
    QTest::newRow("shape picture property, stand-in skipped")
        << QByteArray(
               R"({\rtf1{\shp{\*\shpinst{\sp{\sn fillBlip}{\sv {\pict\pngblip 09}}}{\sp{\sn pib}{\sv {\pict\pngblip\picwgoal30\pichgoal45 0102}}}}{\shprslt{\pict\wmetafile8 03}}}})")
        << QStringLiteral("<png 2 30x45>");
    QTest::newRow("picture takes the formatting around it")
        << QByteArray(R"({\rtf1\super{\pict\pngblip\picwgoal15\pichgoal15 01}})")
        << QStringLiteral("{super}<png 1 15x15>");

    // What is not document text.
    QTest::newRow("unknown starred destination skipped")
        << QByteArray(R"({\rtf1 a{\*\mything text {nested} more}b})") << QStringLiteral("ab");
    QTest::newRow("\\* not at the start of a group is ignored")
        << QByteArray(R"({\rtf1 {a\*\mything b}c})") << QStringLiteral("abc");
    QTest::newRow("known destinations skipped")
        << QByteArray(
               R"({\rtf1{\stylesheet{\s0 Normal;}}{\info{\title T}{\author A}}{\header h}{\footnote f}{\listtable{\list x}}{\*\generator G;}a})")
        << QStringLiteral("a");
    QTest::newRow("field keeps only its result")
        << QByteArray(
               R"({\rtf1 see {\field{\*\fldinst HYPERLINK "http://x"}{\fldrslt {\ul link}}} and {\field{\fldinst PAGE}{\fldrslt 3}}})")
        << QStringLiteral("see |{u}link| and 3");
    QTest::newRow("unknown control words ignored")
        << QByteArray(R"({\rtf1\foo a\bar12 b\baz-3 c\zzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzz d})")
        << QStringLiteral("abcd");
    QTest::newRow("list text kept")
        << QByteArray(R"({\rtf1{\listtext\pard\plain \'95\tab}item\par})")
        << QStringLiteral("•\titem");
    QTest::newRow("text after the document's group ignored")
        << QByteArray(R"({\rtf1 a}b{c})") << QStringLiteral("a");
    QTest::newRow("plain text read as text")
        << QByteArray("plain caf\xe9") << QStringLiteral("plain café");
}

void TestRtf::read() {
    QFETCH(QByteArray, rtf);
    QFETCH(QString, expected);
    QCOMPARE(describe(platform::rtf::read(rtf)), expected);
}

void TestRtf::damagedInput_data() {
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("unterminated");
    QTest::addColumn<bool>("tooDeep");

    QTest::newRow("unterminated group")
        << QByteArray(R"({\rtf1 a\b b{\i c)") << "a|{b}b|{b i}c" << true << false;
    QTest::newRow("unterminated picture")
        << QByteArray(R"({\rtf1 a{\pict\pngblip\picwgoal15\pichgoal15 0102)") << "a|<png 2 15x15>"
        << true << false;
    QTest::newRow("stray closing braces")
        << QByteArray(R"(}}a{\b b}}c)") << "a|{b}b|c" << false << false;
    QTest::newRow("backslash at the end") << QByteArray(R"({\rtf1 a\)") << "a" << true << false;
    QTest::newRow("cut escape") << QByteArray(R"({\rtf1 a\'e)") << "a" << true << false;
    QTest::newRow("bad escape") << QByteArray(R"({\rtf1 a\'zzb})") << "azzb" << false << false;
    QTest::newRow("\\bin longer than the input")
        << QByteArray(R"({\rtf1 a\bin999999999 bcd})") << "a" << true << false;
    QTest::newRow("\\bin negative") << QByteArray(R"({\rtf1 a\bin-5 b})") << "ab" << false << false;
    QTest::newRow("huge numbers clamped")
        << QByteArray(R"({\rtf1\fs99999999999999999999 a\li-99999999999 b\par\u99999999?c})")
        << "[li=-31680]{fs=3276}ab¶[li=-31680]{fs=3276}c" << false << false;
    QTest::newRow("binary junk") << QByteArray("\x00\x01\x02\xff\xfe{\\\x80\x81}\x1b[0m\x7f", 15)
                                 << "ÿþ[0m" << false << false;
    QTest::newRow("colour and font numbers out of range")
        << QByteArray(
               R"({\rtf1{\colortbl;\red1\green2\blue3;}\cf-1 a\cf99999 b\f-7 c\highlight-2 d})")
        << "abcd" << false << false;
}

void TestRtf::damagedInput() {
    QFETCH(QByteArray, rtf);
    QFETCH(QString, expected);
    QFETCH(bool, unterminated);
    QFETCH(bool, tooDeep);
    ReadReport report;
    const Document d = platform::rtf::read(rtf, &report);
    QCOMPARE(describe(d), expected);
    QCOMPARE(report.unterminated, unterminated);
    QCOMPARE(report.tooDeep, tooDeep);
}

void TestRtf::largeInputs() {
    // Nesting far beyond the state stack: the text still shows, in the formatting reached.
    {
        const QByteArray deep =
            "{\\rtf1 " + QByteArray(10000, '{') + "\\b x" + QByteArray(10000, '}') + "y}";
        ReadReport report;
        const Document d = platform::rtf::read(deep, &report);
        QCOMPARE(describe(d), QStringLiteral("{b}x|y"));
        QVERIFY(report.tooDeep);
        QVERIFY(!report.unterminated);
    }
    // A destination too deep to get a state of its own is skipped with its group only.
    {
        const QByteArray deep = "{\\rtf1 " + QByteArray(MaxDepth + 5, '{') +
                                "a{\\*\\x skipped}{\\pict\\pngblip 01}b" +
                                QByteArray(MaxDepth + 5, '}') + "c}";
        QCOMPARE(platform::rtf::read(deep).plainText(), QStringLiteral("abc"));
    }
    // Only opening braces, then only closing ones: nothing to show, nothing kept open.
    {
        ReadReport report;
        QVERIFY(platform::rtf::read(QByteArray(2'000'000, '{'), &report).paragraphs.empty());
        QVERIFY(report.unterminated);
        QVERIFY(platform::rtf::read(QByteArray(2'000'000, '}')).paragraphs.empty());
    }
    // Two megabytes of text and a two-megabyte picture.
    {
        QByteArray big = "{\\rtf1 ";
        for (int i = 0; i < 20000; ++i)
            big += "Ligne C\\sub 4\\nosupersub H\\sub 10\\nosupersub  \\'e9\\u916?\\par\n";
        big += "{\\pict\\pngblip " + QByteArray(2'000'000, 'a') + "}}";
        const Document d = platform::rtf::read(big);
        QCOMPARE(d.paragraphs.size(), std::size_t(20001));
        QCOMPARE(d.paragraphs[19999].text(), QStringLiteral("Ligne C4H10 éΔ"));
        QCOMPARE(pictures(d).front()->data.size(), 1'000'000);
    }
    // Many tab stops in one paragraph: capped.
    {
        QByteArray tabs = "{\\rtf1\\pard";
        for (int i = 0; i < 10000; ++i)
            tabs += "\\tx" + QByteArray::number(i);
        const Document d = platform::rtf::read(tabs + " a}");
        QCOMPARE(d.paragraphs.front().format.tabs.size(), std::size_t(MaxTabStops));
    }
}

void TestRtf::paragraphMarks() {
    // An empty paragraph's height comes from its mark's format.
    const Document d = platform::rtf::read(
        QByteArray(R"({\rtf1{\fonttbl{\f0 Arial;}}\f0\fs20 a\par\fs40\par\b\fs20 b\par})"));
    QCOMPARE(d.paragraphs.size(), std::size_t(3));
    QCOMPARE(describe(d.paragraphs[0].mark), QStringLiteral("f=Arial fs=20"));
    QCOMPARE(describe(d.paragraphs[1].mark), QStringLiteral("f=Arial fs=40"));
    QVERIFY(d.paragraphs[1].runs.empty());
    QCOMPARE(describe(d.paragraphs[2].mark), QStringLiteral("f=Arial fs=20 b"));
}

void TestRtf::roundTrip_data() {
    QTest::addColumn<Document>("doc");
    QTest::addColumn<Document>("expected");

    {
        Document d;
        Paragraph title;
        title.format.alignment = Alignment::Center;
        title.format.spaceAfter = 120;
        CharFormat t = arial(36);
        t.bold = true;
        t.color = Color{0, 0, 200};
        title.runs = {text(QStringLiteral("Thermivo"), t)};
        title.mark = t;
        Paragraph body;
        body.format.leftIndent = 300;
        body.format.rightIndent = 45;
        body.format.firstIndent = -150;
        body.format.spaceBefore = 60;
        body.format.tabs = {{720, TabKind::Left},
                            {2880, TabKind::Right},
                            {4000, TabKind::Center},
                            {5000, TabKind::Decimal}};
        CharFormat sub = arial(), sup = arial(), sym = arial(), it = arial(), ul = arial();
        sub.vertical = VerticalAlign::Sub;
        sup.vertical = VerticalAlign::Super;
        sym.font = QStringLiteral("Symbol");
        it.italic = true;
        it.strike = true;
        ul.underline = true;
        ul.highlight = Color{255, 255, 0};
        body.runs = {text(QStringLiteral("CO"), arial()),
                     text(QStringLiteral("2"), sub),
                     text(QStringLiteral(" : "), arial()),
                     text(QStringLiteral("Dap(1)"), sym),
                     text(QStringLiteral("H = -890 kJ·mol"), arial()),
                     text(QStringLiteral("-1"), sup),
                     text(QStringLiteral(" é"), it),
                     text(QStringLiteral("à\tl’école"), ul)};
        body.mark = arial();
        Paragraph empty;
        empty.mark = arial(40);
        Paragraph justified;
        justified.format.alignment = Alignment::Justify;
        justified.runs = {text(QStringLiteral("fin"), arial())};
        justified.mark = arial();
        Paragraph right;
        right.format.alignment = Alignment::Right;
        right.mark = arial();
        d.paragraphs = {title, body, empty, justified, right};
        QTest::newRow("statement") << d << d;
    }
    {
        Document d;
        Paragraph p;
        p.runs = {
            text(QString::fromUtf8("{\\} → Δ ½ € Œ \U0001F600 a\u00A0b\u00ADc\u2011d e\u2028f "
                                   "~"),
                 CharFormat{})};
        d.paragraphs = {p};
        QTest::newRow("characters, no fonts") << d << d;
    }
    {
        Document d;
        Paragraph p;
        CharFormat f = arial(24);
        f.font = QStringLiteral("Café; Sans");
        CharFormat g;
        g.font = QString();
        p.runs = {text(QStringLiteral("a"), f), text(QStringLiteral("b"), g)};
        d.paragraphs = {p};
        Document expected = d;
        expected.paragraphs[0].runs[0].format.font = QStringLiteral("Café Sans");
        QTest::newRow("font names: escaped, semicolon dropped; runs without a font")
            << d << expected;
    }
    {
        Document d;
        Paragraph p;
        CharFormat f;
        f.font = QStringLiteral("a\u00A0b\u00ADc\u2011d");
        p.runs = {text(QStringLiteral("x"), f)};
        p.mark = f;
        d.paragraphs = {p};
        QTest::newRow("font name with no-break space and hyphens") << d << d;
    }
    {
        Document d;
        Paragraph p;
        Picture png;
        png.data = QByteArray::fromHex("89504e470d0a1a0a00ff");
        png.picWidth = 96;
        png.picHeight = 64;
        png.goalWidth = 1440;
        png.goalHeight = 960;
        Picture jpeg;
        jpeg.kind = PictureKind::Jpeg;
        jpeg.data = QByteArray(300, '\xd8');
        jpeg.scaleX = 50;
        jpeg.scaleY = 75;
        Picture wmf;
        wmf.kind = PictureKind::Wmf;
        wmf.kindParameter = 8;
        wmf.data = QByteArray::fromHex("0100090000");
        wmf.picWidth = 2540;
        Picture dib;
        dib.kind = PictureKind::Bitmap;
        dib.kindParameter = 0;
        dib.data = "dib";
        Picture wbmp = dib;
        wbmp.kindParameter = 103;
        Picture emf = dib;
        emf.kind = PictureKind::Emf;
        Picture mac = dib;
        mac.kind = PictureKind::MacPict;
        CharFormat sup = arial();
        sup.vertical = VerticalAlign::Super;
        p.runs = {text(QStringLiteral("a"), arial()),
                  Run{{}, arial(), png},
                  Run{{}, sup, jpeg},
                  Run{{}, arial(), wmf},
                  Run{{}, arial(), dib},
                  Run{{}, arial(), wbmp},
                  Run{{}, arial(), emf},
                  Run{{}, arial(), mac},
                  text(QStringLiteral("b"), arial())};
        p.mark = arial();
        d.paragraphs = {p};
        QTest::newRow("pictures of every kind") << d << d;
    }
    {
        // A font name keeps its no-break space and soft hyphen; control characters are dropped.
        Document d;
        Paragraph p;
        CharFormat f = arial();
        f.font = QStringLiteral("Times\u00a0New Ro\u00adman");
        p.runs = {text(QStringLiteral("x"), f)};
        p.mark = f;
        d.paragraphs = {p};
        QTest::newRow("font name with a no-break space and a soft hyphen") << d << d;
        Document junk = d;
        junk.paragraphs[0].runs[0].format.font = QStringLiteral("Ti\u0008mes\tNew");
        junk.paragraphs[0].mark = junk.paragraphs[0].runs[0].format;
        Document clean = d;
        clean.paragraphs[0].runs[0].format.font = QStringLiteral("TimesNew");
        clean.paragraphs[0].mark = clean.paragraphs[0].runs[0].format;
        QTest::newRow("control characters in a font name") << junk << clean;
    }
    QTest::newRow("empty document") << Document{} << Document{};
    {
        Document d;
        d.paragraphs.resize(3);
        QTest::newRow("three empty paragraphs") << d << d;
    }
}

void TestRtf::roundTrip() {
    QFETCH(Document, doc);
    QFETCH(Document, expected);
    const Document back = platform::rtf::read(write(doc));
    QCOMPARE(describe(back), describe(expected));
    QVERIFY(back == expected); // marks and picture fields too
}

void TestRtf::writerOutputIsAscii() {
    Document d;
    Paragraph p;
    p.runs = {text(QStringLiteral("été Δ → œ"), arial())};
    p.mark = arial();
    d.paragraphs = {p};
    const QByteArray rtf = write(d);
    QVERIFY(rtf.startsWith("{\\rtf1\\ansi\\ansicpg1252\\deff0"));
    QVERIFY(std::all_of(rtf.begin(), rtf.end(), [](char c) { return c > 0 && c < 0x7F; }));
    QVERIFY(rtf.contains("\\'e9t\\'e9 \\u916? \\u8594? \\'9c"));
}

void TestRtf::randomDocumentsRoundTrip() {
    // Whatever the reader makes of a jumble of control words, the writer puts into words that
    // read back the same.
    QRandomGenerator rng(1975);
    for (int i = 0; i < 400; ++i) {
        const QByteArray in = "{\\rtf1 " + rtftest::jumble(rng, 50);
        const Document d = platform::rtf::read(in);
        QVERIFY2(platform::rtf::read(write(d)) == d, in.constData());
    }
}

void TestRtf::filesFromOtherPrograms_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QStringList>("runs");       // runs that must be found, described
    QTest::addColumn<QStringList>("paragraphs"); // paragraph formats in order, described
    QTest::addColumn<QStringList>("pictures");

    QTest::newRow("pandoc") << dataFile("pandoc.rtf")
                            << QStringLiteral(
                                   "Combustion du méthane\n"
                                   "Le méthane CH4 brûle dans le dioxygène O2 : CH4 + 2 O2 → CO2 "
                                   "+ 2 H2O.\n"
                                   "L’énergie de la liaison C–H vaut 415 kJ·mol-1, soit 0,689 × "
                                   "10-18 J par liaison ; ΔH est négatif.\n"
                                   "Gras, italique, barré et des accents : « l’élève à l’école, où "
                                   "ça ? »\n"
                                   "\uFFFC\n"
                                   "•\tpremier point\n"
                                   "•\tsecond point")
                            << QStringList{"{f=Helvetica fs=36 b}Combustion du méthane",
                                           "{f=Helvetica sub}4",
                                           "{f=Helvetica super}-18",
                                           "{f=Helvetica b}Gras",
                                           "{f=Helvetica i}italique",
                                           "{f=Helvetica s}barré"}
                            << QStringList{"sa=180",
                                           "sa=180",
                                           "sa=180",
                                           "sa=180",
                                           "sa=180",
                                           "li=360 fi=-360 tx=360",
                                           "li=360 fi=-360 sa=180 tx=360"}
                            << QStringList{"<png 598 1440x960>"};
    QTest::newRow("LibreOffice")
        << dataFile("libreoffice.rtf")
        << QStringLiteral("Énergie de réaction\n"
                          "Le dioxyde de carbone CO2 et l'eau H2O se forment ; ΔH = -890 "
                          "kJ·mol-1, soit 1,48 × 10-18 J.\n"
                          "Gras, italique, souligné, barré, rouge, surligné.\n"
                          "Un paragraphe justifié avec un retrait de première ligne, assez long "
                          "pour passer sur plusieurs lignes dans la zone de l'énoncé, avec des "
                          "guillemets « français » et des apostrophes’typographiques.\u2028Suite "
                          "après un saut de ligne.\n"
                          "Espèce\tQuantité\tÉnergie\n"
                          "\uFFFC La flamme chauffe le bécher.")
        << QStringList{"{f=Arial fs=36 b c=0000c8}Énergie de réaction",
                       "{f=Arial fs=20 sub}2",
                       "{f=Symbol fs=20}Δ",
                       "{f=Arial fs=20 super}-18",
                       "{f=Arial fs=20 u}souligné",
                       "{f=Arial fs=20 s}barré",
                       "{f=Arial fs=20 c=ff0000}rouge",
                       "{f=Arial fs=20 h=ffff00}surligné"}
        << QStringList{"qc sa=113",        "li=567 sb=57 sa=57", "qr ri=283",
                       "qj li=283 fi=567", "tx=2268 tqr=5669",   "li=567 sb=57 sa=57"}
        << QStringList{"<png 645 1439x959>"};
    QTest::newRow("WordPad") << dataFile("wordpad.rtf")
                             << QStringLiteral(
                                    "Combustion du butane\n"
                                    "\n"
                                    "Le butane C4H10 brûle dans le dioxygène :\n"
                                    "2 C4H10 + 13 O2\t→ 8 CO2 + 10 H2O\n"
                                    "ΔH = -5 316 kJ·mol-1, soit -8,83 × 10-18 J par réaction.\n"
                                    "Données : EC-H = 415 kJ·mol-1\n"
                                    "\uFFFC")
                             << QStringList{"{f=Arial fs=36 b c=0000c8}Combustion du butane",
                                            "{f=Arial fs=20 sub}10",
                                            "{f=Symbol fs=20}→",
                                            "{f=Symbol fs=20}Δ",
                                            "{f=Arial fs=20 i}H",
                                            "{f=Arial fs=20 super}-18",
                                            "{f=Arial fs=20 sub c=ff0000}C-H",
                                            "{f=Arial fs=20 u}Données"}
                             << QStringList{"qc",
                                            "li=300 sa=120",
                                            "li=300 sa=120",
                                            "li=600 sa=120 tx=2880",
                                            "li=300 sa=120",
                                            "li=300 sa=120",
                                            "li=300 sa=120"}
                             << QStringList{"<wmf 52 1440x960>"};
    QTest::newRow("Word") << dataFile("word.rtf")
                          << QStringLiteral("Exercice 3 : le propane\n"
                                            "Le propane C3H8 brûle ; ΔH = –2 220 kJ·mol–1. Voir "
                                            "le cours.\n"
                                            "•\tRéactifs : C3H8, O2\n"
                                            "▪\tProduits : CO2, H2O\n"
                                            "\uFFFC")
                          << QStringList{"{f=Arial fs=28 b c=0000ff}Exercice 3 : le propane",
                                         "{f=Arial fs=22 sub}8",
                                         "{f=Symbol fs=22}Δ",
                                         "{f=Arial fs=22 super}–1",
                                         "{f=Arial fs=22 u c=0000ff}le cours",
                                         "{f=Arial fs=22 h=ffff00}Réactifs",
                                         "{f=Symbol}•\t",
                                         "{f=Wingdings}▪\t"}
                          << QStringList{"qc sa=160", "qj fi=284 sa=160", "li=720 fi=-360 sa=160",
                                         "li=720 fi=-360 sa=160", "qc sa=160"}
                          << QStringList{"<jpeg 974 720x480>"};
}

void TestRtf::filesFromOtherPrograms() {
    QFETCH(QByteArray, file);
    QFETCH(QString, plain);
    QFETCH(QStringList, runs);
    QFETCH(QStringList, paragraphs);
    QFETCH(QStringList, pictures);

    ReadReport report;
    const Document d = platform::rtf::read(file, &report);
    QVERIFY(report.rtfHeader);
    QVERIFY(!report.unterminated);
    QCOMPARE(d.plainText(), plain);
    for (const QString& expected : runs)
        QVERIFY2(hasRun(d, expected), qPrintable(expected));
    QStringList formats;
    for (const Paragraph& p : d.paragraphs)
        formats << describe(p.format);
    QCOMPARE(formats, paragraphs);
    QStringList pics;
    for (const Picture* p : ::pictures(d))
        pics << describe(*p);
    QCOMPARE(pics, pictures);
    if (QTest::currentDataTag() == QLatin1String("pandoc"))
        QCOMPARE(::pictures(d).front()->data, dataFile("flamme.png"));
    if (QTest::currentDataTag() == QLatin1String("Word"))
        QCOMPARE(::pictures(d).front()->data, dataFile("flamme.jpg"));

    // What the program writes of it reads back the same.
    QVERIFY(platform::rtf::read(write(d)) == d);
}

void TestRtf::symbolTable() {
    // Spot checks across the whole Adobe Symbol layout, written independently of the table.
    const std::pair<unsigned char, char16_t> samples[] = {
        {' ', u' '},  {'"', u'∀'},  {'(', u'('},  {'-', u'−'},  {'9', u'9'},  {'A', u'Α'},
        {'D', u'Δ'},  {'W', u'Ω'},  {'Z', u'Ζ'},  {'a', u'α'},  {'p', u'π'},  {'z', u'ζ'},
        {'~', u'∼'},  {0x7F, 0},    {0x9F, 0},    {0xA3, u'≤'}, {0xAC, u'←'}, {0xAE, u'→'},
        {0xB0, u'°'}, {0xB4, u'×'}, {0xB8, u'÷'}, {0xBE, u'⎯'}, {0xC6, u'∅'}, {0xD6, u'√'},
        {0xE5, u'∑'}, {0xF0, 0},    {0xF2, u'∫'}, {0xFE, u'⎭'}, {0xFF, 0},
    };
    for (const auto& [byte, ch] : samples)
        QCOMPARE(int(platform::symbolCharacter(byte)), int(ch));
}

QTEST_APPLESS_MAIN(TestRtf)
#include "tst_rtf.moc"
