// Exercise files (".E31", "tervox.PEM") arrive by e-mail and on USB sticks: any bytes read as
// an exercise or as a failure, never a crash, and the file reader agrees with the same records
// read from memory — what the browser's preview and the opener would show. What reads as an
// exercise the authoring window could write, written again, reads back the same.
#include "exercises/exercisefile.h"
#include "fuzzcheck.h"
#include "platform/recordfile.h"

#include <QByteArray>
#include <QFile>
#include <cstdint>

using exercises::ExerciseRecords;
using platform::RecordFile;

namespace {

const QString& scratch() {
    static const QString path = scratchFile(QStringLiteral("f.E31"));
    return path;
}

// Record n as the reader must see it: a record past the end is blank, a broken one fails.
bool expectedRecord(const QByteArray& bytes, int n, QString& out) {
    RecordFile::Error e = RecordFile::Error::None;
    const auto text = RecordFile::textAt(bytes, n, &e);
    out = text.value_or(QString());
    return text.has_value() || e == RecordFile::Error::MissingRecord;
}

bool store(const QByteArray& bytes) {
    QFile f(scratch());
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

exercises::ExerciseRead check(const QByteArray& bytes, ExerciseRecords which) {
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
        return read;
    if (which == ExerciseRecords::Statement) {
        FUZZ_CHECK(x.statement == records[1].trimmed());
        FUZZ_CHECK(x.statementConfig == records[2].trimmed());
        return read;
    }
    FUZZ_CHECK(x.correction == records[3].trimmed());
    FUZZ_CHECK(x.correctionConfig == records[4].trimmed());
    if (which == ExerciseRecords::Correction)
        return read;
    FUZZ_CHECK(x.level == exercises::exerciseLevel(records[5]));
    QStringList topics;
    for (int n = 6; n <= 10; ++n)
        if (!records[n].trimmed().isEmpty())
            topics << records[n];
    FUZZ_CHECK(x.topics == topics);
    FUZZ_CHECK(x.title == records[11]);
    return read;
}

// The exercise as read, written by the authoring code and read again.
void rewrite(const exercises::ExerciseFile& read) {
    const exercises::EncodedExercise encoded = exercises::encodeExercise(read);
    FUZZ_CHECK(encoded.bytes.isEmpty() == (encoded.problem != exercises::EncodeProblem::None));
    if (encoded.problem != exercises::EncodeProblem::None) {
        FUZZ_CHECK(encoded.record >= 1 && encoded.record <= exercises::ExerciseRecordCount);
        return;
    }
    FUZZ_CHECK(encoded.bytes.size() == exercises::ExerciseRecordCount * RecordFile::RecordLength);
    if (!store(encoded.bytes))
        return;
    const auto statement = exercises::readExerciseFile(scratch(), ExerciseRecords::Statement);
    const auto preview = exercises::readExerciseFile(scratch(), ExerciseRecords::Preview);
    FUZZ_CHECK(statement.ok && preview.ok);
    FUZZ_CHECK(statement.file.statement == read.statement);
    FUZZ_CHECK(statement.file.statementConfig == read.statementConfig);
    FUZZ_CHECK(preview.file.correction == read.correction);
    FUZZ_CHECK(preview.file.correctionConfig == read.correctionConfig);
    FUZZ_CHECK(preview.file.level == read.level);
    FUZZ_CHECK(preview.file.topics == read.topics);
    FUZZ_CHECK(preview.file.title == read.title);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The reader never looks past record 11.
    if (size > 12 * RecordFile::RecordLength)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (!store(bytes))
        return 0;
    const exercises::ExerciseRead statement = check(bytes, ExerciseRecords::Statement);
    check(bytes, ExerciseRecords::Correction);
    const exercises::ExerciseRead preview = check(bytes, ExerciseRecords::Preview);
    if (statement.ok && preview.ok) {
        exercises::ExerciseFile whole = preview.file;
        whole.statement = statement.file.statement;
        whole.statementConfig = statement.file.statementConfig;
        rewrite(whole);
    }
    return 0;
}
