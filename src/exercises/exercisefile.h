#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace exercises {

// The index file of an exercise (".E31", and the getting-started "tervox.PEM"): records of the
// configuration layout, read as plain data. Names are as written in the file, trimmed, to be
// resolved against the exercise file's own folder. Blank means empty after trimming.
struct ExerciseFile {
    QString statement;        // record 1
    QString statementConfig;  // record 2, may be empty
    QString correction;       // record 3, empty when there is no correction
    QString correctionConfig; // record 4
    int level = 0;            // record 5, 0 when not a whole number
    QStringList topics;       // records 6 to 10, blank ones left out
    QString title;            // record 11 (as written, not trimmed)

    bool corrected() const { return !correction.isEmpty() || !correctionConfig.isEmpty(); }
};

// Which records a reader needs: opening reads 1 and 2, the correction 3 and 4, the preview
// 3 to 11. A record past the end of the file reads blank, as the old random-access reads did.
enum class ExerciseRecords { Statement, Correction, Preview };

struct ExerciseRead {
    bool ok = false; // false: the file could not be opened or holds a broken record
    ExerciseFile file;
};

// Never throws; a failure is reported as ok == false with whatever was read before it.
ExerciseRead readExerciseFile(const QString& path, ExerciseRecords records);

// Record 5 as a level: leading blanks skipped, then the leading digits ("2", " 3 ", "2a" -> 2);
// anything else is 0. Large values are capped so that they never overflow.
int exerciseLevel(const QString& text);

// Writing an exercise file. The reader trims every record but the topics and the title, so the
// names are written trimmed; blank topics are left out and the others move up.
inline constexpr int ExerciseRecordCount = 11;
inline constexpr int MaxTopics = 5;
inline constexpr int MinLevel = 1;
inline constexpr int MaxLevel = 3;

enum class EncodeProblem {
    None,
    BlankTitle,     // record 11 blank: the browser would show nothing to choose by
    BlankStatement, // record 1 blank: there would be nothing to open
    BadLevel,       // outside MinLevel..MaxLevel
    TooManyTopics,  // more than MaxTopics lines that are not blank
    TooLong,        // over 126 bytes once in Windows-1252
    NotEncodable,   // a character without a Windows-1252 byte (it would come back as "?")
};

struct EncodedExercise {
    QByteArray bytes; // the whole file (11 records, zero filler) when problem is None
    EncodeProblem problem = EncodeProblem::None;
    int record = 0;    // the record at fault (1 to 11); for topics, the line's own record
    QString character; // NotEncodable: the first character that has no byte
};

EncodedExercise encodeExercise(const ExerciseFile& exercise);

// The first character of `text` that Windows-1252 cannot hold, or an empty text when every
// one fits (a character outside the Basic Multilingual Plane is returned whole).
QString firstUnencodable(const QString& text);

} // namespace exercises
