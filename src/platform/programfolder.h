#pragma once

#include <QString>

namespace platform {

// The folder the program's files live in: --program-folder (see setProgramFolderOverride) or
// THERMIVO_PROGRAM_FOLDER when given; otherwise "share/thermivo" beside the executable's "bin"
// once installed, else the executable's own folder (a build tree). Always ends with the
// platform's separator ("/").
QString programFolder();
void setProgramFolderOverride(const QString& folder);

// Where the program writes files that the suite expects in the program folder ("TEMPKN.TMP"):
// that folder itself while it is writable, otherwise the user's data folder, created if needed.
// Always ends with "/".
QString writableFolder(const QString& programFolder);

// The folder the file windows start in, as the current folder of the process. A launch from a
// desktop menu starts in the home folder (or "/"), and an installed program folder is
// read-only: then the user's documents folder is the place a teacher expects to save into.
// A launch from a terminal in a folder of one's own keeps that folder.
QString chooseStartingFolder(const QString& current, const QString& home, const QString& documents,
                             const QString& programFolder, bool currentWritable);
// The same for this process and user.
QString startingFolder(const QString& programFolder);
// The user's documents folder, created when missing (the home folder when it cannot be).
QString documentsFolder();

// Appends the separator when missing.
QString withTrailingSeparator(const QString& folder);

// Resolves a file name read from a file against a folder. Names written on Windows use "\";
// they still resolve here. An absolute name is kept as it is.
QString resolveInFolder(const QString& folder, const QString& name);

} // namespace platform
