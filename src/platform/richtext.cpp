#include "platform/richtext.h"

#include "platform/canvas.h"
#include "platform/rtfreader.h"
#include "platform/rtfwriter.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QUrl>
#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double TwipsPerPixel = 15.0;

// What Qt's formats cannot hold on their own, kept so that a document read from RTF writes
// back the same: the font name as the file gave it (the shown families may differ), a
// picture's bytes and RTF sizes, and which tab stop only stands for a hanging indent.
enum Property {
    FontName = QTextFormat::UserProperty + 0x52,
    HangingTab,
    PictureData,
    PictureKind,
    PictureKindParameter,
    PicturePixelWidth,
    PicturePixelHeight,
    PictureGoalWidth,
    PictureGoalHeight,
    PictureScaleX,
    PictureScaleY,
};

int toTwips(double pixels) {
    return static_cast<int>(std::lround(pixels * TwipsPerPixel));
}

QColor toQColor(const rtf::Color& c) {
    return QColor(c.red, c.green, c.blue);
}

rtf::Color fromQColor(const QColor& c) {
    return {c.red(), c.green(), c.blue()};
}

QTextCharFormat toQt(const rtf::CharFormat& f) {
    QTextCharFormat q;
    if (!f.font.isEmpty()) {
        q.setFontFamilies(fontFamilies(f.font));
        q.setProperty(FontName, f.font);
    }
    q.setFontPointSize(f.halfPoints / 2.0);
    q.setFontWeight(f.bold ? QFont::Bold : QFont::Normal);
    q.setFontItalic(f.italic);
    q.setFontUnderline(f.underline);
    q.setFontStrikeOut(f.strike);
    if (f.color)
        q.setForeground(toQColor(*f.color));
    if (f.highlight)
        q.setBackground(toQColor(*f.highlight));
    switch (f.vertical) {
    case rtf::VerticalAlign::Normal:
        q.setVerticalAlignment(QTextCharFormat::AlignNormal);
        break;
    case rtf::VerticalAlign::Super:
        q.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
        break;
    case rtf::VerticalAlign::Sub:
        q.setVerticalAlignment(QTextCharFormat::AlignSubScript);
        break;
    }
    return q;
}

rtf::CharFormat fromQt(const QTextCharFormat& q, const QFont& defaultFont) {
    rtf::CharFormat f;
    if (q.hasProperty(FontName)) {
        f.font = q.stringProperty(FontName);
    } else {
        const QStringList families = q.fontFamilies().toStringList();
        f.font = !families.isEmpty()                ? families.first()
                 : defaultFont.families().isEmpty() ? defaultFont.family()
                                                    : defaultFont.families().first();
    }
    const double points =
        q.hasProperty(QTextFormat::FontPointSize) ? q.fontPointSize() : defaultFont.pointSizeF();
    f.halfPoints = points > 0 ? std::clamp(static_cast<int>(std::lround(points * 2)), 2, 3276) : 24;
    f.bold = q.hasProperty(QTextFormat::FontWeight) ? q.fontWeight() >= QFont::DemiBold
                                                    : defaultFont.bold();
    f.italic = q.fontItalic();
    f.underline = q.fontUnderline();
    f.strike = q.fontStrikeOut();
    if (q.hasProperty(QTextFormat::ForegroundBrush) && q.foreground().style() != Qt::NoBrush)
        f.color = fromQColor(q.foreground().color());
    if (q.hasProperty(QTextFormat::BackgroundBrush) && q.background().style() != Qt::NoBrush)
        f.highlight = fromQColor(q.background().color());
    switch (q.verticalAlignment()) {
    case QTextCharFormat::AlignSuperScript:
        f.vertical = rtf::VerticalAlign::Super;
        break;
    case QTextCharFormat::AlignSubScript:
        f.vertical = rtf::VerticalAlign::Sub;
        break;
    default:
        break;
    }
    return f;
}

QTextBlockFormat toQt(const rtf::ParagraphFormat& p) {
    QTextBlockFormat b;
    switch (p.alignment) {
    case rtf::Alignment::Left:
        b.setAlignment(Qt::AlignLeft);
        break;
    case rtf::Alignment::Center:
        b.setAlignment(Qt::AlignHCenter);
        break;
    case rtf::Alignment::Right:
        b.setAlignment(Qt::AlignRight);
        break;
    case rtf::Alignment::Justify:
        b.setAlignment(Qt::AlignJustify);
        break;
    }
    b.setLeftMargin(p.leftIndent / TwipsPerPixel);
    b.setRightMargin(p.rightIndent / TwipsPerPixel);
    b.setTextIndent(p.firstIndent / TwipsPerPixel);
    b.setTopMargin(p.spaceBefore / TwipsPerPixel);
    b.setBottomMargin(p.spaceAfter / TwipsPerPixel);
    // RTF measures tab stops from the page margin, Qt from where the line starts: for the
    // first line, the left indent plus the first-line indent.
    const int origin = p.leftIndent + p.firstIndent;
    QList<QTextOption::Tab> tabs;
    bool stopAtIndent = false;
    for (const rtf::TabStop& t : p.tabs) {
        QTextOption::Tab tab;
        tab.position = (t.position - origin) / TwipsPerPixel;
        switch (t.kind) {
        case rtf::TabKind::Left:
            tab.type = QTextOption::LeftTab;
            break;
        case rtf::TabKind::Center:
            tab.type = QTextOption::CenterTab;
            break;
        case rtf::TabKind::Right:
            tab.type = QTextOption::RightTab;
            break;
        case rtf::TabKind::Decimal:
            tab.type = QTextOption::DelimiterTab;
            tab.delimiter = QLatin1Char(','); // the French decimal comma
            break;
        }
        tabs.append(tab);
        stopAtIndent = stopAtIndent || t.position == p.leftIndent;
    }
    // A hanging indent is a tab stop too (the text after a list's bullet lines up there).
    if (p.firstIndent < 0 && !stopAtIndent) {
        tabs.append(QTextOption::Tab(-p.firstIndent / TwipsPerPixel, QTextOption::LeftTab));
        b.setProperty(HangingTab, true);
    }
    if (!tabs.isEmpty()) {
        std::stable_sort(tabs.begin(), tabs.end(),
                         [](const auto& a, const auto& b) { return a.position < b.position; });
        b.setTabPositions(tabs);
    }
    return b;
}

rtf::ParagraphFormat fromQt(const QTextBlockFormat& b) {
    rtf::ParagraphFormat p;
    const Qt::Alignment h = b.alignment() & Qt::AlignHorizontal_Mask;
    if (h & Qt::AlignJustify)
        p.alignment = rtf::Alignment::Justify;
    else if (h & Qt::AlignHCenter)
        p.alignment = rtf::Alignment::Center;
    else if (h & (Qt::AlignRight | Qt::AlignTrailing))
        p.alignment = rtf::Alignment::Right;
    p.leftIndent = toTwips(b.leftMargin());
    p.rightIndent = toTwips(b.rightMargin());
    p.firstIndent = toTwips(b.textIndent());
    p.spaceBefore = toTwips(b.topMargin());
    p.spaceAfter = toTwips(b.bottomMargin());
    bool hanging = b.boolProperty(HangingTab);
    for (const QTextOption::Tab& t : b.tabPositions()) {
        rtf::TabStop tab;
        tab.position = toTwips(t.position) + p.leftIndent + p.firstIndent;
        if (hanging && tab.position == p.leftIndent && t.type == QTextOption::LeftTab) {
            hanging = false; // the stop the hanging indent made, not one of the file's
            continue;
        }
        switch (t.type) {
        case QTextOption::LeftTab:
            break;
        case QTextOption::CenterTab:
            tab.kind = rtf::TabKind::Center;
            break;
        case QTextOption::RightTab:
            tab.kind = rtf::TabKind::Right;
            break;
        case QTextOption::DelimiterTab:
            tab.kind = rtf::TabKind::Decimal;
            break;
        }
        p.tabs.push_back(tab);
    }
    return p;
}

// A picture that cannot be shown (a metafile): a grey frame of its size.
QImage placeholder(int width, int height) {
    QImage img(std::clamp(width, 8, 2000), std::clamp(height, 8, 2000), QImage::Format_RGB32);
    img.fill(QColor(236, 236, 236));
    QPainter p(&img);
    p.setPen(QColor(160, 160, 160));
    p.drawRect(0, 0, img.width() - 1, img.height() - 1);
    p.drawLine(0, 0, img.width() - 1, img.height() - 1);
    p.drawLine(0, img.height() - 1, img.width() - 1, 0);
    return img;
}

// Pictures are resources named by their order in the document, so that a new load replaces
// the previous one's instead of piling up beside them.
QTextImageFormat toQt(const rtf::Picture& pict, const QTextCharFormat& base, QTextDocument& doc,
                      int number) {
    QImage img;
    if (pict.kind == rtf::PictureKind::Png || pict.kind == rtf::PictureKind::Jpeg)
        img.loadFromData(pict.data, pict.kind == rtf::PictureKind::Png ? "PNG" : "JPEG");
    double width = pict.shownWidth() / TwipsPerPixel;
    double height = pict.shownHeight() / TwipsPerPixel;
    if (width <= 0 || height <= 0) {
        width = img.isNull() ? 32 : img.width();
        height = img.isNull() ? 32 : img.height();
    }
    if (img.isNull())
        img = placeholder(static_cast<int>(width), static_cast<int>(height));
    const QString name = QStringLiteral("rtfpict:%1").arg(number);
    doc.addResource(QTextDocument::ImageResource, QUrl(name), img);

    QTextImageFormat f;
    f.merge(base);
    f.setName(name);
    f.setWidth(width);
    f.setHeight(height);
    f.setProperty(PictureData, pict.data);
    f.setProperty(PictureKind, static_cast<int>(pict.kind));
    f.setProperty(PictureKindParameter, pict.kindParameter);
    f.setProperty(PicturePixelWidth, pict.picWidth);
    f.setProperty(PicturePixelHeight, pict.picHeight);
    f.setProperty(PictureGoalWidth, pict.goalWidth);
    f.setProperty(PictureGoalHeight, pict.goalHeight);
    f.setProperty(PictureScaleX, pict.scaleX);
    f.setProperty(PictureScaleY, pict.scaleY);
    return f;
}

std::optional<rtf::Picture> fromQt(const QTextImageFormat& f, const QTextDocument& doc) {
    rtf::Picture p;
    if (f.hasProperty(PictureData)) {
        p.data = f.property(PictureData).toByteArray();
        p.kind = static_cast<rtf::PictureKind>(f.intProperty(PictureKind));
        p.kindParameter = f.intProperty(PictureKindParameter);
        p.picWidth = f.intProperty(PicturePixelWidth);
        p.picHeight = f.intProperty(PicturePixelHeight);
        p.goalWidth = f.intProperty(PictureGoalWidth);
        p.goalHeight = f.intProperty(PictureGoalHeight);
        p.scaleX = f.intProperty(PictureScaleX);
        p.scaleY = f.intProperty(PictureScaleY);
        return p;
    }
    // A picture from elsewhere (pasted): written as PNG at the size it is shown.
    const QVariant res = doc.resource(QTextDocument::ImageResource, QUrl(f.name()));
    QImage img;
    if (res.canConvert<QImage>())
        img = res.value<QImage>();
    else if (res.userType() == QMetaType::QByteArray)
        img.loadFromData(res.toByteArray());
    if (img.isNull())
        return std::nullopt;
    QBuffer buffer(&p.data);
    buffer.open(QIODevice::WriteOnly);
    img.save(&buffer, "PNG");
    p.kind = rtf::PictureKind::Png;
    p.goalWidth = toTwips(f.width() > 0 ? f.width() : img.width());
    p.goalHeight = toTwips(f.height() > 0 ? f.height() : img.height());
    p.picWidth = static_cast<int>(std::lround(p.goalWidth * 2540.0 / 1440.0));
    p.picHeight = static_cast<int>(std::lround(p.goalHeight * 2540.0 / 1440.0));
    return p;
}

} // namespace

void fillTextDocument(QTextDocument& doc, const rtf::Document& model) {
    const bool undo = doc.isUndoRedoEnabled();
    doc.setUndoRedoEnabled(false);
    // The old content goes in the same edit block as the new one comes: a text edit then
    // lays the document out once, instead of also for an empty moment that would hide and
    // show its scroll bar, each time at another width.
    QTextCursor cur(&doc);
    cur.beginEditBlock();
    cur.select(QTextCursor::Document);
    cur.removeSelectedText();
    cur.setBlockFormat(QTextBlockFormat());
    cur.setBlockCharFormat(QTextCharFormat());
    int pictures = 0;
    // Neighbouring runs and paragraph marks mostly share formats: convert each one once.
    const rtf::CharFormat* lastModel = nullptr;
    QTextCharFormat last;
    const auto convert = [&](const rtf::CharFormat& f) -> const QTextCharFormat& {
        if (!lastModel || !(*lastModel == f)) {
            last = toQt(f);
            lastModel = &f;
        }
        return last;
    };
    bool first = true;
    for (const rtf::Paragraph& p : model.paragraphs) {
        const QTextBlockFormat block = toQt(p.format);
        if (first) {
            cur.setBlockFormat(block);
            cur.setBlockCharFormat(convert(p.mark));
            first = false;
        } else {
            cur.insertBlock(block, convert(p.mark));
        }
        for (const rtf::Run& r : p.runs) {
            if (r.picture)
                cur.insertImage(toQt(*r.picture, convert(r.format), doc, ++pictures));
            else
                cur.insertText(r.text, convert(r.format));
        }
    }
    cur.endEditBlock();
    doc.setUndoRedoEnabled(undo);
}

rtf::Document textDocumentModel(const QTextDocument& doc) {
    rtf::Document model;
    const QFont defaultFont = doc.defaultFont();
    for (QTextBlock block = doc.begin(); block.isValid(); block = block.next()) {
        rtf::Paragraph p;
        p.format = fromQt(block.blockFormat());
        p.mark = fromQt(block.charFormat(), defaultFont);
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment frag = it.fragment();
            const QTextCharFormat cf = frag.charFormat();
            const rtf::CharFormat f = fromQt(cf, defaultFont);
            if (cf.isImageFormat()) {
                const std::optional<rtf::Picture> pict = fromQt(cf.toImageFormat(), doc);
                if (pict)
                    for (qsizetype i = 0; i < frag.length(); ++i)
                        p.runs.push_back(rtf::Run{{}, f, pict});
                continue;
            }
            QString text = frag.text();
            text.remove(QChar(QChar::ObjectReplacementCharacter));
            if (text.isEmpty())
                continue;
            if (!p.runs.empty() && !p.runs.back().picture && p.runs.back().format == f)
                p.runs.back().text += text;
            else
                p.runs.push_back(rtf::Run{text, f, {}});
        }
        model.paragraphs.push_back(std::move(p));
    }
    return model;
}

void setRtf(QTextDocument& doc, QByteArrayView rtf) {
    fillTextDocument(doc, rtf::read(rtf));
}

QByteArray toRtf(const QTextDocument& doc) {
    return rtf::write(textDocumentModel(doc));
}

void setRichText(QTextEdit& edit, QByteArrayView rtf) {
    const QSignalBlocker quiet(&edit); // the program's write is not an edit
    // A text that needs the scroll bar would be laid out twice: at the full width, then again
    // at the width left once the bar shows. Laid out with the bar, a long text is laid out
    // once; a short one gives the bar back and is laid out again, cheaply.
    const bool asNeeded = edit.verticalScrollBarPolicy() == Qt::ScrollBarAsNeeded;
    if (asNeeded)
        edit.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setRtf(*edit.document(), rtf);
    if (asNeeded)
        edit.setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    edit.moveCursor(QTextCursor::Start);
}

bool loadRichText(QTextEdit& edit, const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.read(MaxRichTextFileSize);
    if (file.error() != QFileDevice::NoError)
        return false;
    file.close();
    setRichText(edit, bytes);
    return true;
}

bool saveRichText(const QTextEdit& edit, const QString& path) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray bytes = toRtf(*edit.document());
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

void printRichText(const QTextEdit& edit, QPagedPaintDevice& device) {
    edit.document()->print(&device);
}

} // namespace platform
