#pragma once

namespace platform {

class DirList;
class DriveList;
class FileList;

// Wires the three lists the way every file window uses them:
// - a new drive: the folder list moves to the drive's current folder (a failure is ignored),
//   the drive list then follows the folder list (so a drive that cannot be read falls back to
//   the drive of the folder still shown), and the file list shows that folder;
// - a new folder: the file list shows it.
// A window adds its own handlers (file clicks, PathChange) beside these.
void linkFolderLists(DriveList* drive, DirList* dir, FileList* files);

} // namespace platform
