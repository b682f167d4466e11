#include "platform/cddrives/LibcdioCdDrives.h"

#include <cdio/cdio.h>
#include <cdio/util.h>

#include <QDir>
#include <QFileInfo>

#include "app/FileNames.h"
#include "app/Settings.h"
#include "platform/cddrives/CdaFile.h"
#include "platform/cddrives/DiscImageSource.h"

namespace cantovel {

namespace {

const QString kImagesSetting = QStringLiteral("CdImages");
const QChar kImageSeparator = QLatin1Char('|');

QStringList realDevices() {
    QStringList list;
    char** devices = cdio_get_devices(DRIVER_DEVICE);
    if (!devices) return list;
    for (char** d = devices; *d; ++d) list << NameFromBytes(*d);
    cdio_free_device_list(devices);
    list.sort();
    return list;
}

QString modelOf(const QString& device) {
    QString name = QFileInfo(device).fileName();
    CdIo_t* cdio = cdio_open(NameToBytes(device).constData(), DRIVER_DEVICE);
    if (!cdio) return name;
    cdio_hwinfo_t hw{};
    if (cdio_get_hwinfo(cdio, &hw)) {
        const QString model = (QString::fromLatin1(hw.psz_vendor).trimmed() + QLatin1Char(' ') +
                               QString::fromLatin1(hw.psz_model).trimmed())
                                  .trimmed();
        if (!model.isEmpty()) name = model;
    }
    cdio_destroy(cdio);
    return name;
}

// The serial an audio disc is known by: the sum of every track's start as packed
// minute/second/frame, plus the playing length in sectors on discs of fewer than three tracks.
uint32_t discSerial(CdIo_t* cdio, track_t first, track_t count) {
    uint32_t serial = 0;
    for (track_t t = first; t < first + count; ++t) {
        msf_t m{};
        if (!cdio_get_track_msf(cdio, t, &m)) continue;
        serial += (uint32_t(cdio_from_bcd8(m.m)) << 16) | (uint32_t(cdio_from_bcd8(m.s)) << 8) |
                  cdio_from_bcd8(m.f);
    }
    if (count < 3) {
        const lsn_t start = cdio_get_track_lsn(cdio, first);
        const lsn_t end = cdio_get_track_lsn(cdio, CDIO_CDROM_LEADOUT_TRACK);
        if (start != CDIO_INVALID_LSN && end != CDIO_INVALID_LSN && end > start)
            serial += uint32_t(end - start);
    }
    return serial;
}

void clearTrackFiles(const QString& folder) {
    QDir dir(folder);
    for (const QString& f : dir.entryList({QStringLiteral("Track*.cda")}, QDir::Files))
        dir.remove(f);
}

}  // namespace

QStringList LibcdioCdDrives::ImageList() {
    return ReadAppSetting(kImagesSetting, QString()).split(kImageSeparator, Qt::SkipEmptyParts);
}

void LibcdioCdDrives::SetImageList(const QStringList& images) {
    SaveAppSetting(kImagesSetting, images.join(kImageSeparator));
}

QString LibcdioCdDrives::FolderOf(QChar letter) {
    return RuntimeFolder() + QStringLiteral("/cd/") + letter.toUpper();
}

QList<CdDrive> LibcdioCdDrives::Drives() {
    QList<CdDrive> drives;
    auto add = [&](const QString& device, const QString& name) {
        if (drives.size() >= 23) return;  // "D" to "Z"
        drives.append({QChar(char16_t(u'D' + drives.size())), name, device});
    };
    for (const QString& d : realDevices()) add(d, modelOf(d));
    QStringList images = ImageList();
    images +=
        qEnvironmentVariable("CANTOVEL_CD_IMAGES").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString& image : images) add(image, QFileInfo(image).fileName());
    return drives;
}

QString LibcdioCdDrives::TrackFolder(QChar letter) {
    letter = letter.toUpper();
    CdDrive drive;
    for (const CdDrive& d : Drives())
        if (d.Letter == letter) drive = d;
    const QString folder = FolderOf(letter);
    if (drive.Letter.isNull()) return QString();

    CdIo_t* cdio = openDisc(drive.Device);
    const track_t first = cdio ? cdio_get_first_track_num(cdio) : track_t(CDIO_INVALID_TRACK);
    const track_t count = cdio ? cdio_get_num_tracks(cdio) : track_t(CDIO_INVALID_TRACK);
    if (!cdio || first == CDIO_INVALID_TRACK || count == CDIO_INVALID_TRACK || count == 0) {
        if (cdio) cdio_destroy(cdio);
        clearTrackFiles(folder);
        return QString();
    }
    if (!QDir().mkpath(folder)) {
        cdio_destroy(cdio);
        return QString();
    }
    QFile::setPermissions(folder,
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    clearTrackFiles(folder);
    const uint32_t serial = discSerial(cdio, first, count);
    for (track_t t = first; t < first + count; ++t) {
        if (cdio_get_track_format(cdio, t) != TRACK_FORMAT_AUDIO) continue;
        const lsn_t start = cdio_get_track_lsn(cdio, t);
        const lsn_t next = cdio_get_track_lsn(
            cdio, t + 1 < first + count ? track_t(t + 1) : track_t(CDIO_CDROM_LEADOUT_TRACK));
        if (start == CDIO_INVALID_LSN || next == CDIO_INVALID_LSN || next < start) continue;
        CdaFile::fromSectors(t, serial, uint32_t(start), uint32_t(next - start))
            .write(folder + QStringLiteral("/Track%1.cda").arg(t, 2, 10, QLatin1Char('0')));
    }
    cdio_destroy(cdio);
    return folder;
}

CdDrive LibcdioCdDrives::DriveOfPath(const QString& path) {
    const QString dir = QFileInfo(path).absolutePath();
    for (const CdDrive& d : Drives()) {
        if (QDir::cleanPath(dir) == QDir::cleanPath(FolderOf(d.Letter))) return d;
    }
    return {};
}

}  // namespace cantovel
