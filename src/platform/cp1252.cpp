#include "platform/cp1252.h"

namespace platform {
// Placeholder until the full table lands.
QByteArray toCp1252(const QString& text) { return text.toLatin1(); }
QString fromCp1252(const QByteArray& bytes) { return QString::fromLatin1(bytes); }
} // namespace platform
