#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <vector>

// Plain model of a rich-text (RTF) document: paragraphs of formatted runs and pictures, in the
// units RTF uses (twips, half-points). The reader fills it from RTF bytes, the writer turns it
// back into RTF, and the text-document bridge (platform/richtext) maps it onto QTextDocument.
namespace platform::rtf {

struct Color {
    int red = 0;
    int green = 0;
    int blue = 0;
    friend bool operator==(const Color&, const Color&) = default;
};

enum class VerticalAlign { Normal, Super, Sub };

struct CharFormat {
    QString font;        // family name from the font table; empty when the file names none
    int halfPoints = 24; // \fs: 24 is 12 points
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    std::optional<Color> color;     // none: automatic (the text colour)
    std::optional<Color> highlight; // none: no background
    VerticalAlign vertical = VerticalAlign::Normal;
    friend bool operator==(const CharFormat&, const CharFormat&) = default;
};

enum class Alignment { Left, Center, Right, Justify };
enum class TabKind { Left, Center, Right, Decimal };

struct TabStop {
    int position = 0; // twips from the left indent's origin
    TabKind kind = TabKind::Left;
    friend bool operator==(const TabStop&, const TabStop&) = default;
};

struct ParagraphFormat {
    Alignment alignment = Alignment::Left;
    int leftIndent = 0;        // \li, twips
    int rightIndent = 0;       // \ri
    int firstIndent = 0;       // \fi, relative to the left indent (negative: hanging)
    int spaceBefore = 0;       // \sb
    int spaceAfter = 0;        // \sa
    std::vector<TabStop> tabs; // by position
    friend bool operator==(const ParagraphFormat&, const ParagraphFormat&) = default;
};

enum class PictureKind { Png, Jpeg, Emf, Wmf, MacPict, Bitmap };

struct Picture {
    PictureKind kind = PictureKind::Png;
    int kindParameter = 0; // the N of \wmetafileN, \dibitmapN, \wbitmapN
    QByteArray data;       // the picture's bytes as stored (a PNG or JPEG file for those kinds)
    // \picw, \pich: the native size, in pixels for device bitmaps and Mac pictures, in 0.01 mm
    // for metafiles and, as word processors write them, for PNG and JPEG.
    int picWidth = 0;
    int picHeight = 0;
    int goalWidth = 0; // \picwgoal, \pichgoal: wanted size in twips, 0 when not given
    int goalHeight = 0;
    int scaleX = 100; // \picscalex, \picscaley: percent
    int scaleY = 100;

    bool sizedInPixels() const {
        return kind == PictureKind::Bitmap || kind == PictureKind::MacPict;
    }
    // Size shown, in twips (0 when the file gives neither a goal nor a native size).
    int shownWidth() const;
    int shownHeight() const;
    friend bool operator==(const Picture&, const Picture&) = default;
};

// A stretch of text in one format, or one picture (then `text` is empty). Tabs are '\t', line
// breaks within a paragraph U+2028, as in QTextDocument.
struct Run {
    QString text;
    CharFormat format;
    std::optional<Picture> picture;
    friend bool operator==(const Run&, const Run&) = default;
};

struct Paragraph {
    ParagraphFormat format;
    CharFormat mark; // format of the paragraph mark: sets the height of an empty paragraph
    std::vector<Run> runs;

    QString text() const; // pictures count as U+FFFC
    friend bool operator==(const Paragraph&, const Paragraph&) = default;
};

struct Document {
    std::vector<Paragraph> paragraphs;

    QString plainText() const; // paragraphs joined by '\n'
    friend bool operator==(const Document&, const Document&) = default;
};

} // namespace platform::rtf
