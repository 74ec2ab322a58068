#include "platform/folderlists.h"

#include "platform/dirlist.h"
#include "platform/drivelist.h"
#include "platform/filelist.h"

namespace platform {

void linkFolderLists(DriveList* drive, DirList* dir, FileList* files) {
    QObject::connect(drive, &DriveList::Change, dir, [drive, dir, files] {
        dir->setPath(drive->drive());
        drive->setDrive(dir->path());
        files->setPath(dir->path());
    });
    QObject::connect(dir, &DirList::Change, files, [dir, files] { files->setPath(dir->path()); });
}

} // namespace platform
