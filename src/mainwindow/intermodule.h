#pragma once

#include <QString>

// "TEMPKN.TMP" in the program folder (in the user's data folder when an installed program folder
// is read-only): how the suite's main module knows this module runs and asks it to open an
// exercise. Each call opens the file, touches one record and closes it;
// a missing, read-only or damaged file never stops the program.
class InterModuleFile {
public:
    static constexpr int RunningRecord = 18;
    static constexpr int ExerciseRecord = 31;

    explicit InterModuleFile(const QString& programFolder);

    void announceRunning() const; // "OUI" into record 18
    void announceStopped() const; // "NON" into record 18

    // Reads record 31, empties it, and returns the request trimmed ("" when there is none or
    // the record cannot be read).
    QString takeExerciseRequest() const;

    QString path() const { return path_; }

private:
    QString path_;
};
