// Record files come from e-mail and USB sticks: any bytes must read as records or as a known
// error, and a write must change exactly the record written.
#include "fuzzcheck.h"
#include "platform/recordfile.h"

#include <QByteArray>
#include <QFile>
#include <cstdint>

using platform::RecordFile;

namespace {
bool known(RecordFile::Error e) {
    switch (e) {
    case RecordFile::Error::None:
    case RecordFile::Error::CannotOpen:
    case RecordFile::Error::CannotWrite:
    case RecordFile::Error::MissingRecord:
    case RecordFile::Error::BadLength:
    case RecordFile::Error::TooLong:
    case RecordFile::Error::BadRecordNumber:
        return true;
    }
    return false;
}

const QString& scratch() {
    static const QString path = scratchFile(QStringLiteral("f.rec"));
    return path;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 64 * 1024)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    {
        QFile f(scratch());
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        f.write(bytes);
    }
    const RecordFile file(scratch());
    const int count = file.recordCount();
    FUZZ_CHECK(count == static_cast<int>((size + 127) / 128));
    // Every record through the in-memory reader; the file reader, which opens the file once a
    // call, on the records where the edge cases lie, and it must agree with the memory one.
    for (int n = 0; n <= count + 1; ++n) {
        RecordFile::Error e = RecordFile::Error::None;
        const auto text = RecordFile::textAt(bytes, n, &e);
        FUZZ_CHECK(known(e));
        FUZZ_CHECK(text.has_value() == (e == RecordFile::Error::None));
        if (text)
            FUZZ_CHECK(text->size() <= RecordFile::MaxTextLength);
        if (n > 3 && n < count - 1)
            continue;
        RecordFile::Error fe = RecordFile::Error::None;
        const auto fromFile = file.readText(n, &fe);
        FUZZ_CHECK(fe == e);
        FUZZ_CHECK(fromFile == text);
        const auto raw = file.readBytes(n, 128, &fe);
        FUZZ_CHECK(known(fe));
        if (raw)
            FUZZ_CHECK(raw->size() == 128);
    }

    // Writing a record (the first byte picks which, the next ones give the text) changes that
    // record's length field and text only, and reads back.
    if (size >= 2) {
        const int n = 1 + data[0] % 12;
        const QString text = QString::fromLatin1(bytes.mid(1, 60)).remove(QChar(0));
        const RecordFile::Error e = file.writeText(n, text);
        FUZZ_CHECK(known(e));
        QFile f(scratch());
        FUZZ_CHECK(f.open(QIODevice::ReadOnly));
        const QByteArray after = f.readAll();
        if (e == RecordFile::Error::None) {
            const qsizetype start = qsizetype(n - 1) * 128;
            FUZZ_CHECK(after.size() >= start + 128);
            FUZZ_CHECK(after.left(std::min(start, bytes.size())) == bytes.left(start));
            // Past the text, the old bytes stay; a file that ended inside the record is padded.
            const qsizetype end = start + 2 + text.size();
            if (bytes.size() > end)
                FUZZ_CHECK(after.mid(end, bytes.size() - end) == bytes.mid(end));
            FUZZ_CHECK(after.size() == std::max(bytes.size(), start + 128));
            const auto back = file.readText(n);
            FUZZ_CHECK(back.has_value());
            FUZZ_CHECK(back->size() == text.size());
        } else {
            FUZZ_CHECK(after == bytes);
        }
    }
    return 0;
}
