#pragma once

#include "platform/rtfdocument.h"

#include <QRandomGenerator>
#include <QStringList>

// A compact text of an RTF model for test tables: paragraphs joined by "¶", runs by "|", each
// run's formatting other than the defaults in braces before its text ("CO|{sub}2"), a
// paragraph's format other than the default in brackets before it ("[qc li=300]"), pictures
// as "<png 598 1440x960>" (kind, bytes, shown size in twips).
namespace rtftest {

using namespace platform::rtf;

inline QString hexColor(const Color& c) {
    return QStringLiteral("%1%2%3")
        .arg(c.red, 2, 16, QLatin1Char('0'))
        .arg(c.green, 2, 16, QLatin1Char('0'))
        .arg(c.blue, 2, 16, QLatin1Char('0'));
}

inline QString describe(const CharFormat& f) {
    QStringList a;
    if (!f.font.isEmpty())
        a << QStringLiteral("f=") + f.font;
    if (f.halfPoints != 24)
        a << QStringLiteral("fs=%1").arg(f.halfPoints);
    if (f.bold)
        a << QStringLiteral("b");
    if (f.italic)
        a << QStringLiteral("i");
    if (f.underline)
        a << QStringLiteral("u");
    if (f.strike)
        a << QStringLiteral("s");
    if (f.vertical == VerticalAlign::Super)
        a << QStringLiteral("super");
    if (f.vertical == VerticalAlign::Sub)
        a << QStringLiteral("sub");
    if (f.color)
        a << QStringLiteral("c=") + hexColor(*f.color);
    if (f.highlight)
        a << QStringLiteral("h=") + hexColor(*f.highlight);
    return a.join(QLatin1Char(' '));
}

inline QString describe(const ParagraphFormat& p) {
    QStringList a;
    const char* align[] = {"", "qc", "qr", "qj"};
    if (p.alignment != Alignment::Left)
        a << QLatin1String(align[static_cast<int>(p.alignment)]);
    const std::pair<const char*, int> values[] = {{"li", p.leftIndent},
                                                  {"ri", p.rightIndent},
                                                  {"fi", p.firstIndent},
                                                  {"sb", p.spaceBefore},
                                                  {"sa", p.spaceAfter}};
    for (const auto& [name, v] : values)
        if (v != 0)
            a << QStringLiteral("%1=%2").arg(QLatin1String(name)).arg(v);
    const char* tabKind[] = {"tx", "tqc", "tqr", "tqdec"};
    for (const TabStop& t : p.tabs)
        a << QStringLiteral("%1=%2")
                 .arg(QLatin1String(tabKind[static_cast<int>(t.kind)]))
                 .arg(t.position);
    return a.join(QLatin1Char(' '));
}

inline QString describe(const Picture& p) {
    const char* kinds[] = {"png", "jpeg", "emf", "wmf", "pict", "bmp"};
    return QStringLiteral("<%1 %2 %3x%4>")
        .arg(QLatin1String(kinds[static_cast<int>(p.kind)]))
        .arg(p.data.size())
        .arg(p.shownWidth())
        .arg(p.shownHeight());
}

inline QString describe(const Run& r) {
    const QString attrs = describe(r.format);
    const QString body = r.picture ? describe(*r.picture) : r.text;
    return attrs.isEmpty() ? body : QStringLiteral("{%1}%2").arg(attrs, body);
}

inline QString describe(const Paragraph& p) {
    QStringList runs;
    for (const Run& r : p.runs)
        runs << describe(r);
    const QString format = describe(p.format);
    const QString body = runs.join(QLatin1Char('|'));
    return format.isEmpty() ? body : QStringLiteral("[%1]%2").arg(format, body);
}

inline QString describe(const Document& d) {
    QStringList paras;
    for (const Paragraph& p : d.paragraphs)
        paras << describe(p);
    return paras.join(QStringLiteral("¶"));
}

// Up to `count` pieces of RTF drawn at random: control words of every kind, tables, pictures,
// escapes, unbalanced groups. For round-trip tests over documents nobody would write by hand.
inline QByteArray jumble(QRandomGenerator& rng, int count) {
    static const char* const pieces[] = {
        "{",
        "}",
        "\\par ",
        "\\b ",
        "\\b0 ",
        "\\i",
        "\\ul",
        "\\ulnone",
        "\\super ",
        "\\sub ",
        "\\nosupersub ",
        "\\up6 ",
        "\\dn4 ",
        "\\plain ",
        "\\f0 ",
        "\\f1 ",
        "\\f2 ",
        "{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset2 Symbol;}{\\f2\\fcharset2 Wingdings;}}",
        "{\\colortbl;\\red1\\green2\\blue3;\\red200\\green0\\blue0;}",
        "\\cf1 ",
        "\\cf2 ",
        "\\highlight1 ",
        "\\fs20 ",
        "\\qc ",
        "\\qr ",
        "\\qj ",
        "\\pard ",
        "\\li300 ",
        "\\fi-200 ",
        "\\tx720 ",
        "\\tqr\\tx100 ",
        "\\'e9",
        "\\'44",
        "\\u916?",
        "\\u-4028?",
        "\\u-4?",
        "\\u8233?",
        "\\uc2 ",
        "\\uc0 ",
        "a",
        "b c",
        "D",
        "\\tab ",
        "\\line ",
        "\\~",
        "\\-",
        "\\\\",
        "\\{",
        "{\\*\\foo ",
        "{\\pict\\pngblip\\picwgoal15\\pichgoal15 ",
        "{\\pict\\wmetafile8 ",
        "0a1b",
        "\\bin3 xyz",
        "{\\nonshppict",
        "\\v ",
        "\\v0 ",
        "\\sect ",
        "{\\field{\\*\\fldinst x}{\\fldrslt ",
        "\\cell "};
    QByteArray out;
    const int length = static_cast<int>(rng.bounded(count));
    for (int k = 0; k < length; ++k)
        out += pieces[rng.bounded(static_cast<int>(std::size(pieces)))];
    return out;
}

} // namespace rtftest
