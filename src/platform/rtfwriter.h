#pragma once

#include "platform/rtfdocument.h"

#include <QByteArray>

namespace platform::rtf {

// Writes the document as RTF (Windows-1252 text, \uN? escapes for every other character) that
// word processors open and that read() turns back into the same document: text, character and
// paragraph formats, paragraph marks and pictures. Runs are expected as read() makes them: no
// empty text runs, no two neighbours in the same format, no control characters but '\t' and
// U+2028 (these are written, and read back, merged or dropped).
QByteArray write(const Document& doc);

} // namespace platform::rtf
