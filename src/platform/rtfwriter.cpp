#include "platform/rtfwriter.h"

#include "platform/cp1252.h"
#include "platform/symbolencoding.h"

#include <algorithm>

namespace platform::rtf {

namespace {

bool isSymbolFont(const QString& name) {
    return name.compare(QLatin1String("Symbol"), Qt::CaseInsensitive) == 0;
}

class Writer {
public:
    explicit Writer(const Document& doc) : doc_(doc) {}
    QByteArray run();

private:
    void collectTables();
    void noteFormat(const CharFormat& f);
    int fontNumber(const QString& name) const;
    int colorNumber(const Color& c) const;
    void word(const char* w) { out_ += w; }
    void word(const char* w, int n) {
        out_ += w;
        out_ += QByteArray::number(n);
    }
    void paragraphFormat(const ParagraphFormat& p);
    void openRun(const CharFormat& f);
    void text(const QString& s, bool symbol);
    void fontName(const QString& name);
    void character(char16_t c, bool symbol);
    void picture(const Picture& p);

    const Document& doc_;
    QByteArray out_;
    std::vector<QString> fonts_;
    bool unnamed_ = false;
    std::vector<Color> colors_;
};

QByteArray Writer::run() {
    collectTables();
    out_.reserve(1024);
    word("{\\rtf1\\ansi\\ansicpg1252");
    // The default font stands for runs without one, so it is named only when every run has one.
    if (!unnamed_ && !fonts_.empty())
        word("\\deff0");
    word("\\uc1");
    if (!fonts_.empty()) {
        word("{\\fonttbl");
        for (std::size_t i = 0; i < fonts_.size(); ++i) {
            word("{\\f", static_cast<int>(i));
            word(isSymbolFont(fonts_[i]) ? "\\fnil\\fcharset2 " : "\\fnil\\fcharset0 ");
            fontName(fonts_[i]);
            word(";}");
        }
        word("}");
    }
    if (!colors_.empty()) {
        word("\r\n{\\colortbl;");
        for (const Color& c : colors_) {
            word("\\red", c.red);
            word("\\green", c.green);
            word("\\blue", c.blue);
            word(";");
        }
        word("}");
    }
    word("\r\n");
    // Each run is a group holding its formatting, as Word and pandoc write them (LibreOffice
    // loses text when \plain closes a superscript). The paragraph mark is a group too.
    for (const Paragraph& p : doc_.paragraphs) {
        paragraphFormat(p.format);
        for (const Run& r : p.runs) {
            openRun(r.format);
            if (r.picture)
                picture(*r.picture);
            else
                text(r.text, isSymbolFont(r.format.font));
            word("}");
        }
        openRun(p.mark);
        word("\\par}\r\n");
    }
    word("}");
    return out_;
}

void Writer::noteFormat(const CharFormat& f) {
    if (f.font.isEmpty())
        unnamed_ = true;
    else if (std::find(fonts_.begin(), fonts_.end(), f.font) == fonts_.end())
        fonts_.push_back(f.font);
    for (const auto& c : {f.color, f.highlight})
        if (c && std::find(colors_.begin(), colors_.end(), *c) == colors_.end())
            colors_.push_back(*c);
}

void Writer::collectTables() {
    for (const Paragraph& p : doc_.paragraphs) {
        noteFormat(p.mark);
        for (const Run& r : p.runs)
            noteFormat(r.format);
    }
}

int Writer::fontNumber(const QString& name) const {
    return static_cast<int>(std::find(fonts_.begin(), fonts_.end(), name) - fonts_.begin());
}

int Writer::colorNumber(const Color& c) const {
    return 1 + static_cast<int>(std::find(colors_.begin(), colors_.end(), c) - colors_.begin());
}

void Writer::paragraphFormat(const ParagraphFormat& p) {
    word("\\pard");
    switch (p.alignment) {
    case Alignment::Left:
        break;
    case Alignment::Center:
        word("\\qc");
        break;
    case Alignment::Right:
        word("\\qr");
        break;
    case Alignment::Justify:
        word("\\qj");
        break;
    }
    const std::pair<const char*, int> indents[] = {
        {"\\li", p.leftIndent},  {"\\ri", p.rightIndent}, {"\\fi", p.firstIndent},
        {"\\sb", p.spaceBefore}, {"\\sa", p.spaceAfter},
    };
    for (const auto& [w, v] : indents)
        if (v != 0)
            word(w, v);
    for (const TabStop& t : p.tabs) {
        switch (t.kind) {
        case TabKind::Left:
            break;
        case TabKind::Center:
            word("\\tqc");
            break;
        case TabKind::Right:
            word("\\tqr");
            break;
        case TabKind::Decimal:
            word("\\tqdec");
            break;
        }
        word("\\tx", t.position);
    }
    word(" ");
}

void Writer::openRun(const CharFormat& f) {
    word("{");
    if (!f.font.isEmpty())
        word("\\f", fontNumber(f.font));
    if (f.halfPoints != 24)
        word("\\fs", f.halfPoints);
    if (f.bold)
        word("\\b");
    if (f.italic)
        word("\\i");
    if (f.underline)
        word("\\ul");
    if (f.strike)
        word("\\strike");
    if (f.color)
        word("\\cf", colorNumber(*f.color));
    if (f.highlight)
        word("\\highlight", colorNumber(*f.highlight));
    if (f.vertical == VerticalAlign::Super)
        word("\\super");
    else if (f.vertical == VerticalAlign::Sub)
        word("\\sub");
    if (out_.endsWith('{'))
        return;
    word(" ");
}

void Writer::text(const QString& s, bool symbol) {
    for (const QChar c : s)
        character(c.unicode(), symbol);
}

// Readers take no control symbols in a font table: the no-break space, the optional hyphen and
// the no-break hyphen go as the characters themselves, and ';' would end the entry.
void Writer::fontName(const QString& name) {
    for (const QChar q : name) {
        const char16_t c = q.unicode();
        if (c == 0x00A0)
            word("\\'a0");
        else if (c == 0x00AD)
            word("\\'ad");
        else if (c == 0x2011)
            word("\\u8209?");
        else if (c != u';')
            character(c, false);
    }
}

void Writer::character(char16_t c, bool symbol) {
    switch (c) {
    case u'\\':
    case u'{':
    case u'}':
        out_ += '\\';
        out_ += static_cast<char>(c);
        return;
    case u'\t':
        word("\\tab ");
        return;
    case 0x2028:
    case 0x2029:
        word("\\line ");
        return;
    case 0x00A0:
        word("\\~");
        return;
    case 0x00AD:
        word("\\-");
        return;
    case 0x2011:
        word("\\_");
        return;
    default:
        break;
    }
    if (c < 0x20 || c == 0xFFFC)
        return;
    // In the Symbol font only the bytes it draws as themselves may stay bytes.
    if (c < 0x7F && (!symbol || symbolCharacter(static_cast<unsigned char>(c)) == c)) {
        out_ += static_cast<char>(c);
        return;
    }
    if (!symbol) {
        const QByteArray b = toCp1252(QString(QChar(c)));
        const auto u = static_cast<unsigned char>(b[0]);
        if (u >= 0x80) {
            static const char hex[] = "0123456789abcdef";
            out_ += "\\'";
            out_ += hex[u >> 4];
            out_ += hex[u & 15];
            return;
        }
    }
    word("\\u", c > 0x7FFF ? static_cast<int>(c) - 65536 : static_cast<int>(c));
    out_ += '?';
}

void Writer::picture(const Picture& p) {
    word("{\\pict");
    switch (p.kind) {
    case PictureKind::Png:
        word("\\pngblip");
        break;
    case PictureKind::Jpeg:
        word("\\jpegblip");
        break;
    case PictureKind::Emf:
        word("\\emfblip");
        break;
    case PictureKind::Wmf:
        word("\\wmetafile", p.kindParameter);
        break;
    case PictureKind::MacPict:
        word("\\macpict");
        break;
    case PictureKind::Bitmap:
        if (p.kindParameter >= 100)
            word("\\wbitmap", p.kindParameter - 100);
        else
            word("\\dibitmap", p.kindParameter);
        break;
    }
    word("\\picw", p.picWidth);
    word("\\pich", p.picHeight);
    if (p.goalWidth > 0)
        word("\\picwgoal", p.goalWidth);
    if (p.goalHeight > 0)
        word("\\pichgoal", p.goalHeight);
    if (p.scaleX != 100)
        word("\\picscalex", p.scaleX);
    if (p.scaleY != 100)
        word("\\picscaley", p.scaleY);
    const QByteArray hex = p.data.toHex();
    for (qsizetype i = 0; i < hex.size(); i += 128) {
        word("\r\n");
        out_ += hex.mid(i, 128);
    }
    word("}");
}

} // namespace

QByteArray write(const Document& doc) {
    return Writer(doc).run();
}

} // namespace platform::rtf
