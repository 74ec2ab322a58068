// Exercise files (".E31", "tervox.PEM") arrive by e-mail and on USB sticks: any bytes read as
// an exercise or as a failure, never a crash, and the file reader agrees with the same records
// read from memory — what the browser's preview and the opener would show.
#include "exercises/exercisefile.h"
#include "fuzzcheck.h"
#include "platform/recordfile.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdint>

using exercises::ExerciseRecords;
using platform::RecordFile;

namespace {

// Memory-backed scratch space when the system has it: the reader opens the file once a record.
const QString& scratch() {
    static QTemporaryDir dir((QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm")
                                                                        : QDir::tempPath()) +
                             QStringLiteral("/thermivo-fuzz-XXXXXX"));
    static const QString path = dir.path() + QStringLiteral("/f.E31");
    return path;
}

// Record n as the reader must see it: a record past the end is blank, a broken one fails.
bool expectedRecord(const QByteArray& bytes, int n, QString& out) {
    RecordFile::Error e = RecordFile::Error::None;
    const auto text = RecordFile::textAt(bytes, n, &e);
    out = text.value_or(QString());
    return text.has_value() || e == RecordFile::Error::MissingRecord;
}

void check(const QByteArray& bytes, ExerciseRecords which) {
    const exercises::ExerciseRead read = exercises::readExerciseFile(scratch(), which);
    const exercises::ExerciseFile& x = read.file;
    FUZZ_CHECK(x.level >= 0 && x.level <= 1000);
    FUZZ_CHECK(x.topics.size() <= 5);
    for (const QString& topic : x.topics)
        FUZZ_CHECK(!topic.trimmed().isEmpty());

    const int first = which == ExerciseRecords::Statement ? 1 : 3;
    const int last = which == ExerciseRecords::Statement    ? 2
                     : which == ExerciseRecords::Correction ? 4
                                                            : 11;
    bool ok = true;
    QString records[12];
    for (int n = first; n <= last && ok; ++n)
        ok = expectedRecord(bytes, n, records[n]);
    FUZZ_CHECK(read.ok == ok);
    if (!ok)
        return;
    if (which == ExerciseRecords::Statement) {
        FUZZ_CHECK(x.statement == records[1].trimmed());
        FUZZ_CHECK(x.statementConfig == records[2].trimmed());
        return;
    }
    FUZZ_CHECK(x.correction == records[3].trimmed());
    FUZZ_CHECK(x.correctionConfig == records[4].trimmed());
    if (which == ExerciseRecords::Correction)
        return;
    FUZZ_CHECK(x.level == exercises::exerciseLevel(records[5]));
    QStringList topics;
    for (int n = 6; n <= 10; ++n)
        if (!records[n].trimmed().isEmpty())
            topics << records[n];
    FUZZ_CHECK(x.topics == topics);
    FUZZ_CHECK(x.title == records[11]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The reader never looks past record 11.
    if (size > 12 * RecordFile::RecordLength)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    {
        QFile f(scratch());
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(bytes) != bytes.size())
            return 0;
    }
    check(bytes, ExerciseRecords::Statement);
    check(bytes, ExerciseRecords::Correction);
    check(bytes, ExerciseRecords::Preview);
    return 0;
}
