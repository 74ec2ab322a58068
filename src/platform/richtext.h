#pragma once

#include "platform/rtfdocument.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

class QPagedPaintDevice;
class QTextDocument;
class QTextEdit;

// Rich text (RTF) in and out of Qt's text documents, for the statement area and anything else
// that shows RTF files. Units: twips are 15 to the pixel, as everywhere in the program.
namespace platform {

// Replaces the content of `doc` with the model, in one edit block (laid out once). The undo
// history is cleared. Pictures become document resources; PNG and JPEG are shown, other kinds
// as a grey placeholder of their size, and all keep their bytes for writing back.
void fillTextDocument(QTextDocument& doc, const rtf::Document& model);
// The model of a text document. Formats the document leaves to its default font (family,
// size) take that font's values; pictures that did not come from RTF are written as PNG.
rtf::Document textDocumentModel(const QTextDocument& doc);

void setRtf(QTextDocument& doc, QByteArrayView rtf);
QByteArray toRtf(const QTextDocument& doc);

// Files larger than this are read up to it (what could be read is shown).
inline constexpr qint64 MaxRichTextFileSize = 64 * 1024 * 1024;

// The text edit's content from RTF bytes or a file. This is the program writing, not the
// user editing: the edit emits no textChanged, so modification tracking that listens to it
// sees only the user's edits. loadRichText returns false, leaving the edit as it was, when
// the file cannot be read.
void setRichText(QTextEdit& edit, QByteArrayView rtf);
bool loadRichText(QTextEdit& edit, const QString& path);
// Writes the edit's content as RTF through a temporary file, so a failed save (false) leaves
// an existing file whole.
bool saveRichText(const QTextEdit& edit, const QString& path);
// Prints the content, paginated for the device (a QPrinter or a QPdfWriter).
void printRichText(const QTextEdit& edit, QPagedPaintDevice& device);

} // namespace platform
