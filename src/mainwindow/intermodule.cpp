#include "mainwindow/intermodule.h"

#include "platform/programfolder.h"
#include "platform/recordfile.h"

InterModuleFile::InterModuleFile(const QString& programFolder)
    : path_(platform::writableFolder(programFolder) + QStringLiteral("TEMPKN.TMP")) {}

void InterModuleFile::announceRunning() const {
    platform::RecordFile(path_).writeText(RunningRecord, QStringLiteral("OUI"));
}

void InterModuleFile::announceStopped() const {
    platform::RecordFile(path_).writeText(RunningRecord, QStringLiteral("NON"));
}

QString InterModuleFile::takeExerciseRequest() const {
    const platform::RecordFile file(path_);
    const QString request = file.readText(ExerciseRecord).value_or(QString());
    file.writeText(ExerciseRecord, QString());
    return request.trimmed();
}
