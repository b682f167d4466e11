#pragma once
// The machine's CD drives as every CD window sees them: real devices and disc images the
// user added, each under a stable letter from "D" on. While a disc is in a drive, the
// drive has a folder of TrackNN.cda files, one per audio track, so a CD track is a path
// like any other media file.

#include <QList>
#include <QString>

#include "platform/Components.h"

namespace cantovel {

struct CdDrive {
    QChar Letter;  // 'D', 'E', ...
    QString Name;  // what a person recognises: the device's model, or the image's file name
    QString
        Device;  // what libcdio opens: a device node ("/dev/sr0") or an image (.cue, .toc, .nrg)
};

class CdDrives {
  public:
    virtual ~CdDrives() = default;

    static CdDrives& get() { return Components::service<CdDrives>(); }

    // Every drive, ordered by letter; looked up afresh on each call.
    virtual QList<CdDrive> Drives() = 0;
    // The folder of the drive's TrackNN.cda files, written for the disc now in it; empty
    // when there is no such drive or no readable disc.
    virtual QString TrackFolder(QChar letter) = 0;
    // The drive whose track folder holds `path`; a null letter when none does.
    virtual CdDrive DriveOfPath(const QString& path) = 0;
};

}  // namespace cantovel
