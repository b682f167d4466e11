#pragma once
// CD drives over libcdio: the machine's devices, then the disc images kept in the settings,
// then those named in CANTOVEL_CD_IMAGES (colon-separated), lettered from "D" in that order.

#include <QStringList>

#include "platform/cddrives/CdDrives.h"

namespace cantovel {

class LibcdioCdDrives : public CdDrives {
  public:
    QList<CdDrive> Drives() override;
    QString TrackFolder(QChar letter) override;
    CdDrive DriveOfPath(const QString& path) override;

    // The disc images the user added, as kept in the settings.
    static QStringList ImageList();
    static void SetImageList(const QStringList& images);

    // The folder a drive's track files go to, whether or not it exists.
    static QString FolderOf(QChar letter);
};

}  // namespace cantovel
