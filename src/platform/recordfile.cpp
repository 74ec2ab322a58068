#include "platform/recordfile.h"

#include "platform/cp1252.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <limits>
#include <utility>

namespace platform {

namespace {

qint64 recordOffset(int n) {
    return static_cast<qint64>(n - 1) * RecordFile::RecordLength;
}

RecordFile::Error fail(RecordFile::Error* out, RecordFile::Error e) {
    if (out)
        *out = e;
    return e;
}

} // namespace

RecordFile::RecordFile(QString path) : path_(std::move(path)) {}

// Opens the file for reading and seeks to record n, which must hold at least `needed` bytes.
bool RecordFile::openRecord(QFile& file, int n, int needed, Error* error) const {
    if (n < 1) {
        fail(error, Error::BadRecordNumber);
        return false;
    }
    if (!QFileInfo(path_).isFile() || !file.open(QIODevice::ReadOnly)) {
        fail(error, Error::CannotOpen);
        return false;
    }
    const qint64 start = recordOffset(n);
    if (file.size() < start + needed || !file.seek(start)) {
        fail(error, Error::MissingRecord);
        return false;
    }
    return true;
}

RecordFile::Error RecordFile::writeBytes(int n, const QByteArray& bytes) const {
    if (n < 1 || n > MaxRecordNumber)
        return Error::BadRecordNumber;
    if (bytes.size() > RecordLength)
        return Error::TooLong;

    QFile file(path_);
    if (!file.open(QIODevice::ReadWrite))
        return Error::CannotOpen;

    // QFile leaves the gap undefined when writing past the end, so fill it ourselves.
    const qint64 start = recordOffset(n);
    const qint64 recordEnd = start + RecordLength;
    const qint64 size = file.size();
    if (size < recordEnd) {
        if (!file.seek(size))
            return Error::CannotWrite;
        const QByteArray chunk(64 * 1024, '\0');
        for (qint64 left = recordEnd - size; left > 0; left -= chunk.size()) {
            const qint64 n = std::min<qint64>(left, chunk.size());
            if (file.write(chunk.constData(), n) != n)
                return Error::CannotWrite;
        }
    }
    if (!file.seek(start) || file.write(bytes) != bytes.size() || !file.flush())
        return Error::CannotWrite;
    file.close();
    return file.error() == QFileDevice::NoError ? Error::None : Error::CannotWrite;
}

std::optional<QByteArray> RecordFile::readBytes(int n, int length, Error* error) const {
    if (error)
        *error = Error::None;
    if (length < 0 || length > RecordLength) {
        fail(error, Error::BadLength);
        return std::nullopt;
    }
    QFile file(path_);
    if (!openRecord(file, n, length, error))
        return std::nullopt;
    QByteArray data = file.read(length);
    if (data.size() != length) {
        fail(error, Error::MissingRecord);
        return std::nullopt;
    }
    return data;
}

std::optional<QByteArray> RecordFile::encodeText(const QString& text, Error* error) {
    if (error)
        *error = Error::None;
    const QByteArray encoded = toCp1252(text);
    if (encoded.size() > MaxTextLength) {
        fail(error, Error::TooLong);
        return std::nullopt;
    }
    const auto length = static_cast<quint16>(encoded.size());
    QByteArray record;
    record.reserve(2 + encoded.size());
    record += static_cast<char>(length & 0xFF);
    record += static_cast<char>(length >> 8);
    record += encoded;
    return record;
}

namespace {

// Length field at `field`, then the text, which must lie within `available` bytes.
std::optional<QString> decodeRecord(const char* field, qint64 available, RecordFile::Error* error) {
    if (available < 2) {
        fail(error, RecordFile::Error::MissingRecord);
        return std::nullopt;
    }
    const int length =
        static_cast<unsigned char>(field[0]) | (static_cast<unsigned char>(field[1]) << 8);
    if (length > RecordFile::MaxTextLength || 2 + length > available) {
        fail(error, RecordFile::Error::BadLength);
        return std::nullopt;
    }
    return fromCp1252(QByteArray(field + 2, length));
}

} // namespace

std::optional<QString> RecordFile::textAt(const QByteArray& data, int n, Error* error) {
    if (error)
        *error = Error::None;
    if (n < 1) {
        fail(error, Error::BadRecordNumber);
        return std::nullopt;
    }
    const qint64 start = recordOffset(n);
    if (start >= data.size()) {
        fail(error, Error::MissingRecord);
        return std::nullopt;
    }
    const qint64 available = std::min<qint64>(data.size() - start, RecordLength);
    return decodeRecord(data.constData() + start, available, error);
}

RecordFile::Error RecordFile::writeText(int n, const QString& text) const {
    if (n < 1 || n > MaxRecordNumber)
        return Error::BadRecordNumber;
    Error error = Error::None;
    const std::optional<QByteArray> record = encodeText(text, &error);
    if (!record)
        return error;
    return writeBytes(n, *record);
}

std::optional<QString> RecordFile::readText(int n, Error* error) const {
    if (error)
        *error = Error::None;
    QFile file(path_);
    if (!openRecord(file, n, 2, error))
        return std::nullopt;
    const QByteArray bytes = file.read(RecordLength);
    return decodeRecord(bytes.constData(), bytes.size(), error);
}

int RecordFile::recordCount() const {
    const QFileInfo info(path_);
    if (!info.isFile())
        return 0;
    const qint64 records = (info.size() + RecordLength - 1) / RecordLength;
    return static_cast<int>(std::min<qint64>(records, std::numeric_limits<int>::max()));
}

} // namespace platform
