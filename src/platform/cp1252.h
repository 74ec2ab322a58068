#pragma once

#include <QByteArray>
#include <QString>

namespace platform {

// Windows-1252 carried in the program: Qt's codec list does not know it on every build.
// Characters without a Windows-1252 byte are written as '?'.
QByteArray toCp1252(const QString& text);
QString fromCp1252(const QByteArray& bytes);

} // namespace platform
