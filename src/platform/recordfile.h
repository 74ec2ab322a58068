#pragma once

#include <QByteArray>
#include <QString>

class QFile;
#include <optional>

namespace platform {

// Random-access files of 128-byte records, numbered from 1. A string record holds a 16-bit
// little-endian length followed by that many Windows-1252 bytes; the rest of the record is
// left as it was. Every call opens the file, does one thing and closes it again.
//
// Writing creates a missing file and never truncates one. When the file ends before or inside
// the record being written, it is first padded with zero bytes up to the end of that record,
// so a freshly written record is always whole. Nothing here throws: failures come back as an
// Error value and leave the file as it was where that is possible.
class RecordFile {
public:
    static constexpr int RecordLength = 128;
    static constexpr int MaxTextLength = RecordLength - 2;
    // Writing pads the file up to the record, so a stray huge number would fill the disk;
    // records beyond 2 GiB are refused with BadRecordNumber.
    static constexpr int MaxRecordNumber = (1 << 24);

    enum class Error {
        None,
        CannotOpen,      // the file cannot be opened (missing when reading, no access, a folder)
        CannotWrite,     // opened, but padding or writing the record failed
        MissingRecord,   // the file ends before the record (or before its length field)
        BadLength,       // length field over 126, or the text runs past the end of the file
        TooLong,         // text over 126 bytes, or raw bytes over 128: refused, nothing written
        BadRecordNumber, // record numbers start at 1 (and stop at MaxRecordNumber for writing)
    };

    explicit RecordFile(QString path);

    const QString& path() const { return path_; }

    // Writes text into record n (creating the file and padding it with zero bytes as needed).
    Error writeText(int n, const QString& text) const;
    // Reads record n. Fails with MissingRecord when the file is shorter than the record's
    // length field, BadLength when that field exceeds 126 or the text runs past the file end.
    std::optional<QString> readText(int n, Error* error = nullptr) const;

    // Raw record access for callers storing numbers: bytes go to the start of record n, the
    // rest of the record is left as it was. Reading asks for `length` bytes (0 to 128) from
    // the start of record n and fails with MissingRecord when the file holds fewer.
    Error writeBytes(int n, const QByteArray& bytes) const;
    std::optional<QByteArray> readBytes(int n, int length, Error* error = nullptr) const;

    // Number of whole or partial records in the file (0 when missing).
    int recordCount() const;

    // The same layout for callers that keep a whole file in memory (a file written in one
    // piece, a file read once). encodeText gives the length field and the text, without
    // filler (TooLong over 126 bytes); textAt reads record n of `data` under the rules of
    // readText (MissingRecord, BadLength, BadRecordNumber).
    static std::optional<QByteArray> encodeText(const QString& text, Error* error = nullptr);
    static std::optional<QString> textAt(const QByteArray& data, int n, Error* error = nullptr);

private:
    bool openRecord(QFile& file, int n, int needed, Error* error) const;

    QString path_;
};

} // namespace platform
