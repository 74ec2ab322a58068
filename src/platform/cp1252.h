#pragma once

#include <QByteArray>
#include <QString>

namespace platform {

// Windows-1252 carried in the program: Qt's codec list does not know it on every build.
// Characters without a Windows-1252 byte are written as '?'.
//
// Bytes 0x81, 0x8D, 0x8F, 0x90 and 0x9D have no character in Windows-1252; they read as the
// control characters U+0081, U+008D, U+008F, U+0090, U+009D and are written back to the same
// byte, so every byte value survives a round trip. A character outside the Basic Multilingual
// Plane is one '?' (not one per UTF-16 half).
QByteArray toCp1252(const QString& text);
QString fromCp1252(const QByteArray& bytes);

} // namespace platform
