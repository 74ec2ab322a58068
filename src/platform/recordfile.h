#pragma once

#include <QString>
#include <optional>

namespace platform {

// Random-access files of 128-byte records, numbered from 1. A string record holds a 16-bit
// little-endian length followed by that many Windows-1252 bytes; the rest of the record is
// left as it was. Every call opens the file, does one thing and closes it again.
class RecordFile {
public:
    static constexpr int RecordLength = 128;
    static constexpr int MaxTextLength = RecordLength - 2;

    enum class Error { None, CannotOpen, CannotWrite, MissingRecord, BadLength, TooLong };

    explicit RecordFile(QString path);

    const QString& path() const { return path_; }

    // Writes text into record n (creating the file and padding it with zero bytes as needed).
    Error writeText(int n, const QString& text) const;
    // Reads record n. Fails with MissingRecord when the file is shorter than the record's
    // length field, BadLength when that field exceeds 126 or the text runs past the file end.
    std::optional<QString> readText(int n, Error* error = nullptr) const;

    // Raw record access for callers storing numbers.
    Error writeBytes(int n, const QByteArray& bytes) const;
    std::optional<QByteArray> readBytes(int n, int length, Error* error = nullptr) const;

    // Number of whole or partial records in the file (0 when missing).
    int recordCount() const;

private:
    QString path_;
};

} // namespace platform
