#include "platform/rtfreader.h"

#include "platform/cp1252.h"
#include "platform/symbolencoding.h"

#include <algorithm>
#include <array>
#include <climits>
#include <string_view>
#include <unordered_map>

namespace platform::rtf {

namespace {

// Limits that keep hostile numbers from turning into huge layouts: Word's own maxima.
constexpr int MaxTwips = 31680;     // 22 inches
constexpr int MaxHalfPoints = 3276; // 1638 points
constexpr int MaxScale = 1000;      // percent
constexpr std::size_t MaxFonts = 4096;
constexpr std::size_t MaxColors = 4096;
constexpr int MaxFallbackChars = 10;

// Shape: a drawing object's properties, where only the picture property ("pib") is read;
// ShapeName and ShapeValue are one property's name and value.
enum class Dest : unsigned char {
    Text,
    FontTable,
    ColorTable,
    Picture,
    Shape,
    ShapeName,
    ShapeValue,
    Skip
};
enum class Charset : unsigned char { Ansi, Symbol, Dingbats };

// Control words the reader knows, grouped in the order controlWord dispatches on.
enum class Kw {
    // destinations
    Fonttbl,
    Colortbl,
    Pict,
    Shppict,
    Fldrslt,
    Shp,
    Shpinst,
    Shprslt,
    Sn,
    Sv,
    SkipDest,
    Bin, // raw bytes, taken before anything else
    // character formatting
    Plain,
    F,
    Fs,
    B,
    I,
    Ul,
    UlNone,
    Strike,
    Cf,
    Highlight,
    Super,
    Sub,
    NoSuperSub,
    Up,
    Dn,
    Hidden,
    // paragraph formatting
    Pard,
    Ql,
    Qc,
    Qr,
    Qj,
    Li,
    Ri,
    Fi,
    Sb,
    Sa,
    Tx,
    Tqr,
    Tqc,
    Tqdec,
    Tb,
    // text
    Deff,
    Uc,
    U,
    Par,
    Line,
    Tab,
    BreakIfText,
    Cell,
    Char, // a fixed character
    // font and colour tables
    Fcharset,
    Red,
    Green,
    Blue,
    // pictures
    PngBlip,
    JpegBlip,
    EmfBlip,
    Wmetafile,
    MacPict,
    DiBitmap,
    WBitmap,
    PicW,
    PicH,
    PicWGoal,
    PicHGoal,
    PicScaleX,
    PicScaleY,
};

struct KwInfo {
    Kw kw;
    char16_t ch = 0; // for Kw::Char
};

const std::unordered_map<std::string_view, KwInfo>& keywords() {
    static const std::unordered_map<std::string_view, KwInfo> table = [] {
        std::unordered_map<std::string_view, KwInfo> t;
        const auto add = [&t](std::string_view w, Kw k, char16_t ch = 0) { t[w] = {k, ch}; };
        add("fonttbl", Kw::Fonttbl);
        add("colortbl", Kw::Colortbl);
        add("pict", Kw::Pict);
        add("shppict", Kw::Shppict);
        add("fldrslt", Kw::Fldrslt);
        add("shp", Kw::Shp);
        add("shpinst", Kw::Shpinst);
        add("shprslt", Kw::Shprslt);
        add("sn", Kw::Sn);
        add("sv", Kw::Sv);
        // Destinations whose content is not document text.
        for (std::string_view w : {"stylesheet",   "info",
                                   "header",       "headerl",
                                   "headerr",      "headerf",
                                   "footer",       "footerl",
                                   "footerr",      "footerf",
                                   "footnote",     "annotation",
                                   "listtable",    "listoverridetable",
                                   "revtbl",       "rsidtbl",
                                   "generator",    "xmlnstbl",
                                   "themedata",    "colorschememapping",
                                   "latentstyles", "datastore",
                                   "filetbl",      "pgdsctbl",
                                   "objdata",      "objclass",
                                   "pn",           "pnseclvl",
                                   "do",           "xe",
                                   "tc",           "txe",
                                   "bkmkstart",    "bkmkend",
                                   "template",     "userprops",
                                   "docvar",       "atnid",
                                   "atnauthor",    "atndate",
                                   "atnref",       "ftnsep",
                                   "ftnsepc",      "aftnsep",
                                   "aftnsepc",     "fldinst",
                                   "nonshppict",   "mmathPr",
                                   "picprop",      "blipuid",
                                   "fchars",       "lchars",
                                   "pgptbl",       "protusertbl",
                                   "listpicture",  "defchp",
                                   "defpap",       "wgrffmtfilter",
                                   "falt",         "panose",
                                   "fontemb",      "fontfile",
                                   "keywords",     "title",
                                   "subject",      "author",
                                   "operator",     "comment",
                                   "company"})
            add(w, Kw::SkipDest);
        add("deff", Kw::Deff);
        add("uc", Kw::Uc);
        add("u", Kw::U);
        add("bin", Kw::Bin);
        add("plain", Kw::Plain);
        add("f", Kw::F);
        add("fs", Kw::Fs);
        add("b", Kw::B);
        add("i", Kw::I);
        for (std::string_view w : {"ul", "uld", "uldb", "ulw", "ulwave", "uldash", "uldashd",
                                   "uldashdd", "ulth", "ulthd", "ulthdash", "ulthdashd",
                                   "ulthdashdd", "ulhwave", "ululdbwave", "ulldash", "ulthldash"})
            add(w, Kw::Ul);
        add("ulnone", Kw::UlNone);
        add("strike", Kw::Strike);
        add("striked", Kw::Strike);
        add("cf", Kw::Cf);
        add("highlight", Kw::Highlight);
        add("cb", Kw::Highlight);
        add("chcbpat", Kw::Highlight);
        add("super", Kw::Super);
        add("sub", Kw::Sub);
        add("nosupersub", Kw::NoSuperSub);
        add("up", Kw::Up);
        add("dn", Kw::Dn);
        add("v", Kw::Hidden);
        add("pard", Kw::Pard);
        add("ql", Kw::Ql);
        add("qc", Kw::Qc);
        add("qr", Kw::Qr);
        add("qj", Kw::Qj);
        add("qd", Kw::Qj);
        add("li", Kw::Li);
        add("lin", Kw::Li);
        add("ri", Kw::Ri);
        add("rin", Kw::Ri);
        add("fi", Kw::Fi);
        add("sb", Kw::Sb);
        add("sa", Kw::Sa);
        add("tx", Kw::Tx);
        add("tqr", Kw::Tqr);
        add("tqc", Kw::Tqc);
        add("tqdec", Kw::Tqdec);
        add("tb", Kw::Tb);
        add("par", Kw::Par);
        add("line", Kw::Line);
        add("tab", Kw::Tab);
        add("page", Kw::BreakIfText);
        add("sect", Kw::BreakIfText);
        add("row", Kw::BreakIfText);
        add("cell", Kw::Cell);
        add("nestcell", Kw::Cell);
        add("lquote", Kw::Char, 0x2018);
        add("rquote", Kw::Char, 0x2019);
        add("ldblquote", Kw::Char, 0x201C);
        add("rdblquote", Kw::Char, 0x201D);
        add("emdash", Kw::Char, 0x2014);
        add("endash", Kw::Char, 0x2013);
        add("bullet", Kw::Char, 0x2022);
        add("emspace", Kw::Char, 0x2003);
        add("enspace", Kw::Char, 0x2002);
        add("qmspace", Kw::Char, 0x2005);
        add("fcharset", Kw::Fcharset);
        add("red", Kw::Red);
        add("green", Kw::Green);
        add("blue", Kw::Blue);
        add("pngblip", Kw::PngBlip);
        add("jpegblip", Kw::JpegBlip);
        add("emfblip", Kw::EmfBlip);
        add("wmetafile", Kw::Wmetafile);
        add("macpict", Kw::MacPict);
        add("dibitmap", Kw::DiBitmap);
        add("wbitmap", Kw::WBitmap);
        add("picw", Kw::PicW);
        add("pich", Kw::PicH);
        add("picwgoal", Kw::PicWGoal);
        add("pichgoal", Kw::PicHGoal);
        add("picscalex", Kw::PicScaleX);
        add("picscaley", Kw::PicScaleY);
        return t;
    }();
    return table;
}

// Windows-1252 of every byte, built once from the program's own table.
const std::array<char16_t, 256>& ansiTable() {
    static const std::array<char16_t, 256> table = [] {
        std::array<char16_t, 256> t{};
        QByteArray all(256, '\0');
        for (int b = 0; b < 256; ++b)
            all[b] = static_cast<char>(b);
        const QString text = fromCp1252(all);
        for (int b = 0; b < 256; ++b)
            t[static_cast<std::size_t>(b)] = text[b].unicode();
        return t;
    }();
    return table;
}

int hexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

struct Font {
    QString name;
    Charset charset = Charset::Ansi;
};

// A control word's number, and whether it had one.
struct Param {
    bool given = false;
    int value = 0;
    bool on() const { return !given || value != 0; } // \b is on, \b0 off
};

// Formatting in force inside one group.
struct State {
    Dest dest = Dest::Text;
    int font = -1;
    int color = 0;
    int highlight = 0;
    int halfPoints = 24;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    bool hidden = false;
    VerticalAlign vertical = VerticalAlign::Normal;
    int uc = 1;
    TabKind pendingTab = TabKind::Left;
    ParagraphFormat para;
};

class Reader {
public:
    explicit Reader(QByteArrayView in) : in_(in) {}
    Document run(ReadReport* report);

private:
    void openGroup();
    void closeGroup();
    void controlWord(std::string_view word, bool hasParam, int param);
    void destinationWord(Kw kw);
    void characterWord(Kw kw, Param p);
    void paragraphWord(Kw kw, Param p);
    void textWord(KwInfo info, Param p);
    void tableWord(Kw kw, Param p);
    void pictureWord(Kw kw, Param p);
    void controlSymbol(char c);
    void textByte(unsigned char b);
    void ansiByte(unsigned char b); // a \'hh
    void unicodeChar(int code);
    void put(char16_t c);
    void fontNameChar(char16_t c);
    void endParagraph();
    void skipBinary(int count);

    void plain();
    void formatChanged() { runMatches_ = false; }
    CharFormat resolve() const;
    Charset charsetOf(int font);
    void commitFont();
    void commitColor();
    void startPicture();
    void finishPicture();

    QByteArrayView in_;
    qsizetype pos_ = 0;

    std::vector<State> stack_;
    State st_;
    int overflow_ = 0;     // groups opened beyond MaxDepth and not yet closed
    int overflowSkip_ = 0; // within those, the level from which everything is skipped
    bool star_ = false;
    qsizetype groupStart_ = -1; // position just after the last '{'
    int skipChars_ = 0;
    bool finished_ = false;

    std::unordered_map<int, Font> fonts_;
    int deff_ = -1;
    int cachedFont_ = INT_MIN;
    Charset cachedCharset_ = Charset::Ansi;

    std::vector<std::optional<Color>> colors_;
    Color entryColor_;
    bool entryColorSet_ = false;

    bool entryOpen_ = false;
    int entryFont_ = 0;
    bool entrySymbolSet_ = false;
    QString entryName_;

    bool shapePicture_ = false; // the current shape's picture was read
    QString shapeProperty_;

    int pictLevel_ = -1;
    bool pictKnown_ = false;
    int nibble_ = -1;
    Picture pict_;

    Document doc_;
    Paragraph para_;
    bool runMatches_ = false;
    ReadReport report_;
};

Document Reader::run(ReadReport* report) {
    const char* data = in_.data();
    const qsizetype n = in_.size();
    {
        qsizetype i = 0;
        while (i < n && (data[i] == ' ' || data[i] == '\t' || data[i] == '\r' || data[i] == '\n'))
            ++i;
        report_.rtfHeader = in_.sliced(i).startsWith("{\\rtf");
    }
    stack_.reserve(16);
    while (pos_ < n && !finished_) {
        const char c = data[pos_++];
        switch (c) {
        case '{':
            openGroup();
            groupStart_ = pos_;
            break;
        case '}':
            closeGroup();
            break;
        case '\\': {
            if (pos_ >= n)
                break;
            const char d = data[pos_];
            if (!isLetter(d)) {
                ++pos_;
                controlSymbol(d);
                break;
            }
            const qsizetype start = pos_;
            while (pos_ < n && isLetter(data[pos_]))
                ++pos_;
            // Words longer than any real one are read whole and then ignored.
            const std::string_view word(data + start, static_cast<std::size_t>(pos_ - start));
            bool negative = false;
            bool hasParam = false;
            long long value = 0;
            if (pos_ + 1 < n && data[pos_] == '-' && isDigit(data[pos_ + 1])) {
                negative = true;
                ++pos_;
            }
            while (pos_ < n && isDigit(data[pos_])) {
                hasParam = true;
                if (value < 100000000000LL)
                    value = value * 10 + (data[pos_] - '0');
                ++pos_;
            }
            if (pos_ < n && data[pos_] == ' ')
                ++pos_;
            value = std::clamp(negative ? -value : value, static_cast<long long>(INT_MIN),
                               static_cast<long long>(INT_MAX));
            controlWord(word, hasParam, static_cast<int>(value));
            break;
        }
        case '\r':
        case '\n':
            break;
        default:
            textByte(static_cast<unsigned char>(c));
            break;
        }
    }
    if (!finished_ && (!stack_.empty() || overflow_ > 0)) {
        report_.unterminated = true;
        overflow_ = 0;
        overflowSkip_ = 0;
        while (!stack_.empty())
            closeGroup();
    }
    if (!para_.runs.empty())
        endParagraph();
    if (report)
        *report = report_;
    return std::move(doc_);
}

void Reader::openGroup() {
    star_ = false;
    skipChars_ = 0;
    if (overflow_ > 0 || stack_.size() >= static_cast<std::size_t>(MaxDepth)) {
        report_.tooDeep = true;
        ++overflow_;
        return;
    }
    stack_.push_back(st_);
}

void Reader::closeGroup() {
    star_ = false;
    skipChars_ = 0;
    if (overflow_ > 0) {
        if (overflowSkip_ > 0 && overflow_ <= overflowSkip_)
            overflowSkip_ = 0;
        --overflow_;
        return;
    }
    if (stack_.empty())
        return; // a stray closing brace
    if (st_.dest == Dest::FontTable)
        commitFont();
    if (st_.dest == Dest::Picture && pictLevel_ == static_cast<int>(stack_.size()))
        finishPicture();
    // A last paragraph without \par takes the format in force when the document ends.
    if (stack_.size() == 1 && report_.rtfHeader && !para_.runs.empty())
        endParagraph();
    st_ = std::move(stack_.back());
    stack_.pop_back();
    formatChanged();
    // Once the group holding an RTF document closes, what follows is not part of it.
    if (stack_.empty() && report_.rtfHeader)
        finished_ = true;
}

void Reader::skipBinary(int count) {
    const qsizetype take = std::min<qsizetype>(std::max(count, 0), in_.size() - pos_);
    if (st_.dest == Dest::Picture && overflowSkip_ == 0)
        pict_.data.append(in_.sliced(pos_, take));
    pos_ += take;
}

void Reader::controlWord(std::string_view word, bool hasParam, int param) {
    const auto& table = keywords();
    const auto it = table.find(word);
    const bool starred = star_;
    star_ = false;
    if (it == table.end()) {
        // An unknown destination: skipped with its group.
        if (starred && overflowSkip_ == 0) {
            if (overflow_ > 0)
                overflowSkip_ = overflow_;
            else
                st_.dest = Dest::Skip;
        }
        return;
    }
    const KwInfo info = it->second;
    if (info.kw == Kw::Bin) {
        skipBinary(hasParam ? param : 0);
        return;
    }
    if (overflowSkip_ > 0 || st_.dest == Dest::Skip)
        return;
    const bool destination = info.kw <= Kw::SkipDest;
    if (overflow_ > 0 && (destination || starred)) {
        // Too deep to keep a state of its own: a destination here is skipped with its group.
        overflowSkip_ = overflow_;
        return;
    }
    if (starred && info.kw != Kw::Shppict && info.kw != Kw::Shpinst && info.kw != Kw::Fldrslt &&
        info.kw != Kw::Pict && info.kw != Kw::Fonttbl && info.kw != Kw::Colortbl) {
        st_.dest = Dest::Skip;
        return;
    }
    skipChars_ = 0;
    const Param p{hasParam, param};
    if (destination)
        destinationWord(info.kw);
    else if (info.kw <= Kw::Hidden)
        characterWord(info.kw, p);
    else if (info.kw <= Kw::Tb)
        paragraphWord(info.kw, p);
    else if (info.kw <= Kw::Char)
        textWord(info, p);
    else if (info.kw <= Kw::Blue)
        tableWord(info.kw, p);
    else if (st_.dest == Dest::Picture)
        pictureWord(info.kw, p);
}

void Reader::destinationWord(Kw kw) {
    switch (kw) {
    case Kw::Fonttbl:
        st_.dest = Dest::FontTable;
        entryOpen_ = false;
        break;
    case Kw::Colortbl:
        st_.dest = Dest::ColorTable;
        entryColorSet_ = false;
        break;
    case Kw::Pict:
        if (st_.dest == Dest::Text || st_.dest == Dest::ShapeValue)
            startPicture();
        break;
    case Kw::Shp:
        shapePicture_ = false;
        break;
    case Kw::Shpinst:
        if (st_.dest == Dest::Text)
            st_.dest = Dest::Shape;
        break;
    case Kw::Shprslt:
        // The shape's stand-in for readers without drawing objects: not wanted when the
        // shape's own picture was shown.
        if (shapePicture_)
            st_.dest = Dest::Skip;
        break;
    case Kw::Sn:
        if (st_.dest == Dest::Shape) {
            st_.dest = Dest::ShapeName;
            shapeProperty_.clear();
        }
        break;
    case Kw::Sv:
        if (st_.dest == Dest::Shape)
            st_.dest = shapeProperty_ == QLatin1String("pib") ? Dest::ShapeValue : Dest::Skip;
        break;
    case Kw::SkipDest:
        st_.dest = Dest::Skip;
        break;
    default: // \shppict and \fldrslt hold document text
        break;
    }
}

void Reader::characterWord(Kw kw, Param p) {
    switch (kw) {
    case Kw::Plain:
        plain();
        break;
    case Kw::F:
        if (st_.dest == Dest::FontTable) {
            commitFont();
            entryOpen_ = true;
            entryFont_ = p.value;
            entrySymbolSet_ = false;
            entryName_.clear();
            return;
        }
        st_.font = p.value;
        break;
    case Kw::Fs:
        if (!p.given)
            st_.halfPoints = 24;
        else if (p.value > 0)
            st_.halfPoints = std::clamp(p.value, 2, MaxHalfPoints);
        break;
    case Kw::B:
        st_.bold = p.on();
        break;
    case Kw::I:
        st_.italic = p.on();
        break;
    case Kw::Ul:
        st_.underline = p.on();
        break;
    case Kw::UlNone:
        st_.underline = false;
        break;
    case Kw::Strike:
        st_.strike = p.on();
        break;
    case Kw::Cf:
        st_.color = p.given ? p.value : 0;
        break;
    case Kw::Highlight:
        st_.highlight = p.given ? p.value : 0;
        break;
    case Kw::Super:
        st_.vertical = VerticalAlign::Super;
        break;
    case Kw::Sub:
        st_.vertical = VerticalAlign::Sub;
        break;
    case Kw::NoSuperSub:
        st_.vertical = VerticalAlign::Normal;
        break;
    case Kw::Up:
        // Raised or lowered by N half-points: older rich-edit controls write sub- and
        // superscripts this way.
        st_.vertical = (!p.given || p.value > 0) ? VerticalAlign::Super : VerticalAlign::Normal;
        break;
    case Kw::Dn:
        st_.vertical = (!p.given || p.value > 0) ? VerticalAlign::Sub : VerticalAlign::Normal;
        break;
    case Kw::Hidden:
        st_.hidden = p.on();
        break;
    default:
        break;
    }
    formatChanged();
}

void Reader::paragraphWord(Kw kw, Param p) {
    ParagraphFormat& para = st_.para;
    switch (kw) {
    case Kw::Pard:
        para = ParagraphFormat{};
        st_.pendingTab = TabKind::Left;
        break;
    case Kw::Ql:
        para.alignment = Alignment::Left;
        break;
    case Kw::Qc:
        para.alignment = Alignment::Center;
        break;
    case Kw::Qr:
        para.alignment = Alignment::Right;
        break;
    case Kw::Qj:
        para.alignment = Alignment::Justify;
        break;
    case Kw::Li:
        para.leftIndent = std::clamp(p.value, -MaxTwips, MaxTwips);
        break;
    case Kw::Ri:
        para.rightIndent = std::clamp(p.value, -MaxTwips, MaxTwips);
        break;
    case Kw::Fi:
        para.firstIndent = std::clamp(p.value, -MaxTwips, MaxTwips);
        break;
    case Kw::Sb:
        para.spaceBefore = std::clamp(p.value, 0, MaxTwips);
        break;
    case Kw::Sa:
        para.spaceAfter = std::clamp(p.value, 0, MaxTwips);
        break;
    case Kw::Tx:
        if (para.tabs.size() < static_cast<std::size_t>(MaxTabStops))
            para.tabs.push_back({std::clamp(p.value, 0, MaxTwips), st_.pendingTab});
        st_.pendingTab = TabKind::Left;
        break;
    case Kw::Tqr:
        st_.pendingTab = TabKind::Right;
        break;
    case Kw::Tqc:
        st_.pendingTab = TabKind::Center;
        break;
    case Kw::Tqdec:
        st_.pendingTab = TabKind::Decimal;
        break;
    case Kw::Tb: // a bar, not a stop
        st_.pendingTab = TabKind::Left;
        break;
    default:
        break;
    }
}

void Reader::textWord(KwInfo info, Param p) {
    switch (info.kw) {
    case Kw::Deff:
        deff_ = p.value;
        if (st_.font < 0)
            st_.font = p.value;
        formatChanged();
        break;
    case Kw::Uc:
        st_.uc = std::clamp(p.value, 0, MaxFallbackChars);
        break;
    case Kw::U:
        unicodeChar(p.value);
        break;
    case Kw::Par:
        if (st_.dest == Dest::Text)
            endParagraph();
        break;
    case Kw::BreakIfText:
        if (st_.dest == Dest::Text && !para_.runs.empty())
            endParagraph();
        break;
    case Kw::Line:
        put(0x2028);
        break;
    case Kw::Tab:
    case Kw::Cell:
        put(u'\t');
        break;
    case Kw::Char:
        put(info.ch);
        break;
    default:
        break;
    }
}

void Reader::tableWord(Kw kw, Param p) {
    if (kw == Kw::Fcharset) {
        if (st_.dest == Dest::FontTable)
            entrySymbolSet_ = p.value == 2;
        return;
    }
    if (st_.dest != Dest::ColorTable)
        return;
    const int v = std::clamp(p.value, 0, 255);
    (kw == Kw::Red ? entryColor_.red : kw == Kw::Green ? entryColor_.green : entryColor_.blue) = v;
    entryColorSet_ = true;
}

void Reader::pictureWord(Kw kw, Param p) {
    if (kw <= Kw::WBitmap) // a kind word: the last one says
        pict_.kindParameter = 0;
    switch (kw) {
    case Kw::PngBlip:
        pict_.kind = PictureKind::Png;
        break;
    case Kw::JpegBlip:
        pict_.kind = PictureKind::Jpeg;
        break;
    case Kw::EmfBlip:
        pict_.kind = PictureKind::Emf;
        break;
    case Kw::Wmetafile:
        pict_.kind = PictureKind::Wmf;
        pict_.kindParameter = p.given ? std::clamp(p.value, 0, 99) : 1;
        break;
    case Kw::MacPict:
        pict_.kind = PictureKind::MacPict;
        break;
    case Kw::DiBitmap:
    case Kw::WBitmap:
        pict_.kind = PictureKind::Bitmap;
        pict_.kindParameter =
            (kw == Kw::DiBitmap ? 0 : 100) + (p.given ? std::clamp(p.value, 0, 99) : 0);
        break;
    case Kw::PicW:
        pict_.picWidth = std::clamp(p.value, 0, 1000000);
        return;
    case Kw::PicH:
        pict_.picHeight = std::clamp(p.value, 0, 1000000);
        return;
    case Kw::PicWGoal:
        pict_.goalWidth = std::clamp(p.value, 0, MaxTwips);
        return;
    case Kw::PicHGoal:
        pict_.goalHeight = std::clamp(p.value, 0, MaxTwips);
        return;
    case Kw::PicScaleX:
        pict_.scaleX = std::clamp(p.value, 1, MaxScale);
        return;
    case Kw::PicScaleY:
        pict_.scaleY = std::clamp(p.value, 1, MaxScale);
        return;
    default:
        return;
    }
    pictKnown_ = true;
}

void Reader::controlSymbol(char c) {
    if (c == '*') {
        // Only "{\*" marks a destination to skip when unknown.
        star_ = pos_ - 2 == groupStart_;
        return;
    }
    star_ = false;
    if (c == '\'') {
        int value = 0;
        int digits = 0;
        while (digits < 2 && pos_ < in_.size() && hexValue(in_[pos_]) >= 0) {
            value = value * 16 + hexValue(in_[pos_]);
            ++pos_;
            ++digits;
        }
        if (digits == 2)
            ansiByte(static_cast<unsigned char>(value));
        return;
    }
    if (overflowSkip_ > 0 || st_.dest == Dest::Skip)
        return;
    switch (c) {
    case '\\':
    case '{':
    case '}':
        textByte(static_cast<unsigned char>(c));
        return;
    case '\r':
    case '\n':
        skipChars_ = 0;
        if (st_.dest == Dest::Text)
            endParagraph();
        return;
    case '~':
        put(0x00A0);
        return;
    case '-':
        put(0x00AD);
        return;
    case '_':
        put(0x2011);
        return;
    case '\t':
        put(u'\t');
        return;
    default:
        return; // \: \| and other symbols carry nothing to show
    }
}

void Reader::textByte(unsigned char b) {
    star_ = false;
    if (skipChars_ > 0) {
        --skipChars_;
        return;
    }
    if (overflowSkip_ > 0)
        return;
    switch (st_.dest) {
    case Dest::Text:
        if (b == '\t')
            put(u'\t');
        else if (b >= 0x20)
            ansiByte(b);
        break;
    case Dest::FontTable:
        if (b == ';')
            commitFont();
        else
            fontNameChar(ansiTable()[b]);
        break;
    case Dest::ColorTable:
        if (b == ';')
            commitColor();
        break;
    case Dest::Picture: {
        const int v = hexValue(static_cast<char>(b));
        if (v < 0)
            break;
        if (nibble_ < 0) {
            nibble_ = v;
        } else {
            pict_.data.append(static_cast<char>(nibble_ * 16 + v));
            nibble_ = -1;
        }
        break;
    }
    case Dest::ShapeName:
        if (shapeProperty_.size() < 64)
            shapeProperty_ += QChar(b);
        break;
    case Dest::Shape:
    case Dest::ShapeValue:
    case Dest::Skip:
        break;
    }
}

void Reader::ansiByte(unsigned char b) {
    if (skipChars_ > 0) {
        --skipChars_;
        return;
    }
    if (overflowSkip_ > 0)
        return;
    if (st_.dest == Dest::FontTable) {
        fontNameChar(ansiTable()[b]);
        return;
    }
    if (st_.dest != Dest::Text)
        return;
    if (b < 0x20) {
        if (b == '\t')
            put(u'\t');
        return;
    }
    switch (charsetOf(st_.font)) {
    case Charset::Ansi:
        put(ansiTable()[b]);
        break;
    case Charset::Symbol:
        if (const char16_t c = symbolCharacter(b))
            put(c);
        break;
    case Charset::Dingbats:
        put(dingbatCharacter(b));
        break;
    }
}

void Reader::unicodeChar(int code) {
    if (code < 0)
        code += 65536;
    if (code >= 0 && code <= 0xFFFF) {
        if (st_.dest == Dest::FontTable) {
            fontNameChar(static_cast<char16_t>(code));
        } else if (st_.dest == Dest::Text) {
            // Symbol-font characters written by their private-use code (U+F020 to U+F0FF).
            const Charset cs = charsetOf(st_.font);
            if (cs != Charset::Ansi && code >= 0xF020 && code <= 0xF0FF) {
                const auto b = static_cast<unsigned char>(code - 0xF000);
                const char16_t c = cs == Charset::Symbol ? symbolCharacter(b) : dingbatCharacter(b);
                if (c)
                    put(c);
            } else {
                put(static_cast<char16_t>(code));
            }
        }
    }
    skipChars_ = st_.uc;
}

void Reader::put(char16_t c) {
    if (st_.dest != Dest::Text || st_.hidden || overflowSkip_ > 0)
        return;
    // Control characters (C0 but the tab, DEL, C1) have nothing to show, and the object
    // mark stands for pictures only. A paragraph separator inside text breaks the line.
    if ((c < 0x20 && c != u'\t') || (c >= 0x7F && c <= 0x9F) || c == 0xFFFC)
        return;
    if (c == 0x2029)
        c = 0x2028;
    if (!runMatches_) {
        const CharFormat f = resolve();
        if (para_.runs.empty() || para_.runs.back().picture || para_.runs.back().format != f)
            para_.runs.push_back(Run{{}, f, {}});
        runMatches_ = true;
    }
    para_.runs.back().text += QChar(c);
}

// A font name keeps only what can be written back in a font table entry: no control
// characters, no line breaks, no ';' (it ends the entry).
void Reader::fontNameChar(char16_t c) {
    if (!entryOpen_ || c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0xFFFC || c == 0x2028 ||
        c == 0x2029 || c == u';')
        return;
    entryName_ += QChar(c);
}

void Reader::endParagraph() {
    skipChars_ = 0;
    para_.format = st_.para;
    std::stable_sort(para_.format.tabs.begin(), para_.format.tabs.end(),
                     [](const TabStop& a, const TabStop& b) { return a.position < b.position; });
    para_.mark = resolve();
    doc_.paragraphs.push_back(std::move(para_));
    para_ = Paragraph{};
    runMatches_ = false;
}

void Reader::plain() {
    st_.font = deff_;
    st_.halfPoints = 24;
    st_.bold = st_.italic = st_.underline = st_.strike = st_.hidden = false;
    st_.color = 0;
    st_.highlight = 0;
    st_.vertical = VerticalAlign::Normal;
    formatChanged();
}

CharFormat Reader::resolve() const {
    CharFormat f;
    if (const auto it = fonts_.find(st_.font); it != fonts_.end())
        f.font = it->second.name;
    f.halfPoints = st_.halfPoints;
    f.bold = st_.bold;
    f.italic = st_.italic;
    f.underline = st_.underline;
    f.strike = st_.strike;
    if (st_.color >= 0 && static_cast<std::size_t>(st_.color) < colors_.size())
        f.color = colors_[static_cast<std::size_t>(st_.color)];
    if (st_.highlight > 0 && static_cast<std::size_t>(st_.highlight) < colors_.size())
        f.highlight = colors_[static_cast<std::size_t>(st_.highlight)];
    f.vertical = st_.vertical;
    return f;
}

Charset Reader::charsetOf(int font) {
    if (font != cachedFont_) {
        const auto it = fonts_.find(font);
        cachedCharset_ = it == fonts_.end() ? Charset::Ansi : it->second.charset;
        cachedFont_ = font;
    }
    return cachedCharset_;
}

void Reader::commitFont() {
    if (!entryOpen_)
        return;
    entryOpen_ = false;
    const QString name = entryName_.trimmed();
    entryName_.clear();
    if (name.isEmpty() || (fonts_.size() >= MaxFonts && !fonts_.contains(entryFont_)))
        return;
    Font font{name, Charset::Ansi};
    const auto startsWith = [&](const char* prefix) {
        return name.startsWith(QLatin1String(prefix), Qt::CaseInsensitive);
    };
    if (name.compare(QLatin1String("Symbol"), Qt::CaseInsensitive) == 0)
        font.charset = Charset::Symbol;
    else if (entrySymbolSet_)
        font.charset = (startsWith("Wingdings") || startsWith("Webdings") ||
                        startsWith("Zapf Dingbats") || startsWith("Marlett"))
                           ? Charset::Dingbats
                           : Charset::Symbol;
    fonts_[entryFont_] = font;
    cachedFont_ = INT_MIN;
    formatChanged();
}

void Reader::commitColor() {
    if (colors_.size() < MaxColors)
        colors_.push_back(entryColorSet_ ? std::optional<Color>(entryColor_) : std::nullopt);
    entryColor_ = Color{};
    entryColorSet_ = false;
    formatChanged();
}

void Reader::startPicture() {
    st_.dest = Dest::Picture;
    pictLevel_ = static_cast<int>(stack_.size());
    pict_ = Picture{};
    pictKnown_ = false;
    nibble_ = -1;
}

void Reader::finishPicture() {
    pictLevel_ = -1;
    Picture pict = std::move(pict_);
    pict_ = Picture{};
    if (!pictKnown_ || pict.data.isEmpty())
        return;
    // The picture is shown with the formatting of the group around it.
    const State& outer = stack_.back();
    if ((outer.dest != Dest::Text && outer.dest != Dest::ShapeValue) || outer.hidden)
        return;
    if (outer.dest == Dest::ShapeValue)
        shapePicture_ = true;
    State saved = std::move(st_);
    st_ = outer;
    para_.runs.push_back(Run{{}, resolve(), std::move(pict)});
    st_ = std::move(saved);
    runMatches_ = false;
}

} // namespace

int Picture::shownWidth() const {
    const long long base = goalWidth > 0     ? goalWidth
                           : sizedInPixels() ? picWidth * 15LL
                                             : picWidth * 1440LL / 2540;
    return static_cast<int>(std::min<long long>(base * scaleX / 100, INT_MAX));
}

int Picture::shownHeight() const {
    const long long base = goalHeight > 0    ? goalHeight
                           : sizedInPixels() ? picHeight * 15LL
                                             : picHeight * 1440LL / 2540;
    return static_cast<int>(std::min<long long>(base * scaleY / 100, INT_MAX));
}

QString Paragraph::text() const {
    QString out;
    for (const Run& r : runs)
        out += r.picture ? QString(QChar(0xFFFC)) : r.text;
    return out;
}

QString Document::plainText() const {
    QString out;
    for (std::size_t i = 0; i < paragraphs.size(); ++i) {
        if (i > 0)
            out += QLatin1Char('\n');
        out += paragraphs[i].text();
    }
    return out;
}

Document read(QByteArrayView bytes, ReadReport* report) {
    return Reader(bytes).run(report);
}

} // namespace platform::rtf
