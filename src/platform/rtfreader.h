#pragma once

#include "platform/rtfdocument.h"

#include <QByteArrayView>

namespace platform::rtf {

// Groups nested deeper than this are read as if they were part of the group at this depth
// (their text kept, their destinations skipped), so the state stack stays small.
inline constexpr int MaxDepth = 512;
// Tab stops kept per paragraph; further ones are ignored.
inline constexpr int MaxTabStops = 64;

struct ReadReport {
    bool rtfHeader = false;    // the bytes begin with "{\rtf" (after blanks)
    bool unterminated = false; // groups were still open at the end of the bytes
    bool tooDeep = false;      // groups were nested deeper than MaxDepth
};

// Reads RTF as word processors write it: groups with a state stack, the font and colour
// tables, character and paragraph formatting, Windows-1252 and Symbol-font text, \u escapes
// and PNG/JPEG pictures (other pictures are kept as data). Unknown control words are ignored
// and unknown {\* ...} destinations skipped. Any bytes give a document: what could be read,
// without errors, in time linear in the input, and never recursing.
Document read(QByteArrayView bytes, ReadReport* report = nullptr);

} // namespace platform::rtf
