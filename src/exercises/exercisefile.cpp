#include "exercises/exercisefile.h"

#include "platform/cp1252.h"
#include "platform/recordfile.h"

#include <QFileInfo>
#include <algorithm>
#include <array>

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

QString firstUnencodable(const QString& text) {
    for (qsizetype i = 0; i < text.size();) {
        const qsizetype n =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()
                ? 2
                : 1;
        const QString c = text.mid(i, n);
        if (c != QLatin1String("?") && platform::toCp1252(c) == "?")
            return c;
        i += n;
    }
    return QString();
}

EncodedExercise encodeExercise(const ExerciseFile& exercise) {
    EncodedExercise out;
    auto fail = [&](EncodeProblem problem, int record) {
        out.bytes.clear();
        out.problem = problem;
        out.record = record;
        return out;
    };
    if (exercise.title.trimmed().isEmpty())
        return fail(EncodeProblem::BlankTitle, 11);
    if (exercise.statement.trimmed().isEmpty())
        return fail(EncodeProblem::BlankStatement, 1);
    if (exercise.level < MinLevel || exercise.level > MaxLevel)
        return fail(EncodeProblem::BadLevel, 5);

    std::array<QString, ExerciseRecordCount> texts;
    texts[0] = exercise.statement.trimmed();
    texts[1] = exercise.statementConfig.trimmed();
    texts[2] = exercise.correction.trimmed();
    texts[3] = exercise.correctionConfig.trimmed();
    texts[4] = QString::number(exercise.level);
    std::size_t topic = 5;
    for (const QString& line : exercise.topics) {
        if (line.trimmed().isEmpty())
            continue;
        if (topic == 10)
            return fail(EncodeProblem::TooManyTopics, 10);
        texts[topic++] = line;
    }
    texts[10] = exercise.title;

    out.bytes = QByteArray(ExerciseRecordCount * platform::RecordFile::RecordLength, '\0');
    for (int n = 1; n <= ExerciseRecordCount; ++n) {
        const QString& text = texts[static_cast<std::size_t>(n - 1)];
        if (const QString c = firstUnencodable(text); !c.isEmpty()) {
            fail(EncodeProblem::NotEncodable, n);
            out.character = c;
            return out;
        }
        const std::optional<QByteArray> record = platform::RecordFile::encodeText(text);
        if (!record)
            return fail(EncodeProblem::TooLong, n);
        out.bytes.replace((n - 1) * platform::RecordFile::RecordLength, record->size(), *record);
    }
    return out;
}

} // namespace exercises
