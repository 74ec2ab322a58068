#pragma once

#include <QString>

namespace platform {

// The folder the program's files live in: the executable's folder unless overridden by
// --program-folder (see setProgramFolderOverride) or THERMIVO_PROGRAM_FOLDER. Always ends with
// the platform's separator ("/").
QString programFolder();
void setProgramFolderOverride(const QString& folder);

// Appends the separator when missing.
QString withTrailingSeparator(const QString& folder);

// Resolves a file name read from a file against a folder. Names written on Windows use "\";
// they still resolve here. An absolute name is kept as it is.
QString resolveInFolder(const QString& folder, const QString& name);

} // namespace platform
