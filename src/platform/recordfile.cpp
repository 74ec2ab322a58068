#include "platform/recordfile.h"

#include <utility>

namespace platform {
// Placeholder until the record layer lands.
RecordFile::RecordFile(QString path) : path_(std::move(path)) {}
RecordFile::Error RecordFile::writeText(int, const QString&) const { return Error::CannotOpen; }
std::optional<QString> RecordFile::readText(int, Error* e) const { if (e) *e = Error::CannotOpen; return std::nullopt; }
RecordFile::Error RecordFile::writeBytes(int, const QByteArray&) const { return Error::CannotOpen; }
std::optional<QByteArray> RecordFile::readBytes(int, int, Error* e) const { if (e) *e = Error::CannotOpen; return std::nullopt; }
int RecordFile::recordCount() const { return 0; }
} // namespace platform
