#include "exercises/exercisefile.h"

#include "platform/recordfile.h"

#include <QFileInfo>
#include <algorithm>

namespace exercises {

namespace {

// Reads one record; a missing record is blank, any other failure ends the read.
bool readRecord(const platform::RecordFile& file, int n, QString& out) {
    platform::RecordFile::Error error = platform::RecordFile::Error::None;
    const std::optional<QString> text = file.readText(n, &error);
    if (text) {
        out = *text;
        return true;
    }
    out.clear();
    return error == platform::RecordFile::Error::MissingRecord;
}

} // namespace

int exerciseLevel(const QString& text) {
    const QString t = text.trimmed();
    int level = 0;
    for (const QChar c : t) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            break;
        level = std::min(level * 10 + (c.unicode() - '0'), 1000);
    }
    return level;
}

ExerciseRead readExerciseFile(const QString& path, ExerciseRecords records) {
    ExerciseRead result;
    const platform::RecordFile file(path);
    // A missing file is a failure, not a blank exercise.
    if (!QFileInfo(path).isFile())
        return result;
    QString text;
    auto next = [&](int n, QString& into) {
        if (!readRecord(file, n, text))
            return false;
        into = text.trimmed();
        return true;
    };
    ExerciseFile& x = result.file;
    if (records == ExerciseRecords::Statement) {
        result.ok = next(1, x.statement) && next(2, x.statementConfig);
        return result;
    }
    if (!next(3, x.correction) || !next(4, x.correctionConfig))
        return result;
    if (records == ExerciseRecords::Correction) {
        result.ok = true;
        return result;
    }
    QString level;
    if (!next(5, level))
        return result;
    x.level = exerciseLevel(level);
    for (int n = 6; n <= 10; ++n) {
        QString topic;
        if (!next(n, topic))
            return result;
        if (!topic.isEmpty())
            x.topics << text; // the line as written
    }
    if (!readRecord(file, 11, text))
        return result;
    x.title = text;
    result.ok = true;
    return result;
}

} // namespace exercises
