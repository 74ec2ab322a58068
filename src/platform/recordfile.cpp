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
    if (n < 1) {
        fail(error, Error::BadRecordNumber);
        return std::nullopt;
    }
    if (length < 0 || length > RecordLength) {
        fail(error, Error::BadLength);
        return std::nullopt;
    }
    QFile file(path_);
    if (!QFileInfo(path_).isFile() || !file.open(QIODevice::ReadOnly)) {
        fail(error, Error::CannotOpen);
        return std::nullopt;
    }
    const qint64 start = recordOffset(n);
    if (file.size() < start + length || !file.seek(start)) {
        fail(error, Error::MissingRecord);
        return std::nullopt;
    }
    QByteArray data = file.read(length);
    if (data.size() != length) {
        fail(error, Error::MissingRecord);
        return std::nullopt;
    }
    return data;
}

RecordFile::Error RecordFile::writeText(int n, const QString& text) const {
    if (n < 1 || n > MaxRecordNumber)
        return Error::BadRecordNumber;
    const QByteArray encoded = toCp1252(text);
    if (encoded.size() > MaxTextLength)
        return Error::TooLong;
    const auto length = static_cast<quint16>(encoded.size());
    QByteArray record;
    record.reserve(2 + encoded.size());
    record += static_cast<char>(length & 0xFF);
    record += static_cast<char>(length >> 8);
    record += encoded;
    return writeBytes(n, record);
}

std::optional<QString> RecordFile::readText(int n, Error* error) const {
    if (error)
        *error = Error::None;
    if (n < 1) {
        fail(error, Error::BadRecordNumber);
        return std::nullopt;
    }
    QFile file(path_);
    if (!QFileInfo(path_).isFile() || !file.open(QIODevice::ReadOnly)) {
        fail(error, Error::CannotOpen);
        return std::nullopt;
    }
    const qint64 start = recordOffset(n);
    const qint64 size = file.size();
    if (size < start + 2 || !file.seek(start)) {
        fail(error, Error::MissingRecord);
        return std::nullopt;
    }
    const QByteArray field = file.read(2);
    if (field.size() != 2) {
        fail(error, Error::MissingRecord);
        return std::nullopt;
    }
    const int length =
        static_cast<unsigned char>(field[0]) | (static_cast<unsigned char>(field[1]) << 8);
    if (length > MaxTextLength || start + 2 + length > size) {
        fail(error, Error::BadLength);
        return std::nullopt;
    }
    const QByteArray text = file.read(length);
    if (text.size() != length) {
        fail(error, Error::BadLength);
        return std::nullopt;
    }
    return fromCp1252(text);
}

int RecordFile::recordCount() const {
    const QFileInfo info(path_);
    if (!info.isFile())
        return 0;
    const qint64 records = (info.size() + RecordLength - 1) / RecordLength;
    return static_cast<int>(std::min<qint64>(records, std::numeric_limits<int>::max()));
}

} // namespace platform
