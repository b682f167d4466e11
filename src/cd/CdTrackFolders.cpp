#include "cd/CdTrackFolders.h"

#include "platform/cddrives/CdDrives.h"

namespace cantovel {

QStringList CdTrackFolders() {
    QStringList folders;
    if (!Components::hasService<CdDrives>()) return folders;
    CdDrives& drives = CdDrives::get();
    for (const CdDrive& drive : drives.Drives()) {
        const QString folder = drives.TrackFolder(drive.Letter);
        if (!folder.isEmpty()) folders << folder;
    }
    return folders;
}

}  // namespace cantovel
