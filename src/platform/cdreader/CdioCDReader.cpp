#include "platform/cdreader/CdioCDReader.h"

#include <cdio/cdio.h>
#include <cdio/mmc.h>
#include <cdio/mmc_ll_cmds.h>

#include <QFile>
#include <QFileInfo>
#include <QMetaObject>
#include <algorithm>

#include "app/FileNames.h"
#include "platform/cdaudio/CdAudioPlayer.h"
#include "platform/cdaudio/CdioQuiet.h"
#include "platform/cddrives/CdDrives.h"
#include "platform/cddrives/DiscImageSource.h"
#include "platform/cddrives/DiscTracks.h"
#include "platform/cdreader/CdRipper.h"

namespace cantovel {

namespace {

// Drives count positions from the start of the disc's time line, two seconds before the
// first sector libcdio numbers 0.
constexpr qint64 kPregap = 150;

QList<CdDrive> machineDrives() {
    if (!Components::hasService<CdDrives>()) return {};
    return CdDrives::get().Drives();
}

}  // namespace

CdioCDReader::CdioCDReader(QObject* parent) : CDReader(parent) {
    quietCdio();
}

CdioCDReader::~CdioCDReader() {
    job_.stop();
    releaseDisc();
}

QList<CDDevice> CdioCDReader::Devices() const {
    QList<CDDevice> devices;
    for (const CdDrive& d : machineDrives()) devices.append({QString(d.Letter), d.Name});
    return devices;
}

void CdioCDReader::Open() {
    clearError();
    const QList<CdDrive> drives = machineDrives();
    Close();
    if (DeviceID() < 0 || DeviceID() >= drives.size()) {
        raise(QStringLiteral("There is no CD-ROM drive number %1.").arg(DeviceID()));
        return;
    }
    device_ = drives[DeviceID()].Device;
    doorOpen_ = false;
    if (!isImage() && !QFileInfo(device_).isReadable())
        raise(QStringLiteral("%1 cannot be read.").arg(device_));
    refresh();
}

void CdioCDReader::Close() {
    if (player_) player_->stop();
    releaseDisc();
    device_.clear();
}

void CdioCDReader::releaseDisc() const {
    if (cdio_) cdio_destroy(cdio_);
    cdio_ = nullptr;
    present_ = tocRead_ = false;
    tracks_.clear();
    leadOut_ = 0;
    imageSize_ = -1;
}

bool CdioCDReader::isImage() const {
    return QFileInfo(device_).isFile() || !device_.startsWith(QLatin1String("/dev/"));
}

void CdioCDReader::refresh() const {
    if (device_.isEmpty()) return;
    if (isImage()) {
        // The image is the disc: gone, changed or behind an open door, it is looked at anew.
        const QFileInfo info(device_);
        if (doorOpen_ || !info.isFile()) {
            releaseDisc();
            return;
        }
        if (cdio_ && info.lastModified() == imageStamp_ && info.size() == imageSize_) return;
        releaseDisc();
        imageStamp_ = info.lastModified();
        imageSize_ = info.size();
        present_ = true;
        cdio_ = openDisc(device_);
        readToc();
        return;
    }
    if (!cdio_) cdio_ = openDisc(device_);
    if (!cdio_) {
        present_ = tocRead_ = false;
        tracks_.clear();
        return;
    }
    const bool ready = mmc_test_unit_ready(cdio_, 0) == DRIVER_OP_SUCCESS;
    if (!ready) {
        present_ = tocRead_ = false;
        tracks_.clear();
        return;
    }
    if (!present_ || cdio_get_media_changed(cdio_) == 1) {
        present_ = true;
        readToc();
    }
}

void CdioCDReader::readToc() const {
    tracks_.clear();
    tocRead_ = false;
    const DiscToc toc = readDiscToc(cdio_);
    if (toc.tracks.isEmpty()) return;
    leadOut_ = toc.leadOut;
    for (const DiscTrack& t : toc.tracks) {
        CDTrack track;
        track.Number = t.number;
        track.StartPosition = FromFrames(t.first + kPregap);
        track.Length = FromFrames(t.sectors);
        track.IsAudio = t.isAudio();
        track.CopyProtected =
            cdio_get_track_copy_permit(cdio_, track_t(t.number)) != CDIO_TRACK_FLAG_TRUE;
        track.PreEmphasis =
            cdio_get_track_preemphasis(cdio_, track_t(t.number)) == CDIO_TRACK_FLAG_TRUE;
        tracks_.append(track);
    }
    tocRead_ = true;
}

bool CdioCDReader::DiscPresent() const {
    refresh();
    return present_;
}

bool CdioCDReader::DirectoryRead() const {
    refresh();
    return present_ && tocRead_;
}

int CdioCDReader::DriveState() const {
    if (device_.isEmpty()) return dsNone;
    if (isImage() ? doorOpen_ : cdio_ && mmc_get_tray_status(cdio_) == 1) return dsDoorOpen;
    if (!DiscPresent()) return dsNoDisc;
    if (player_ && player_->state() == CdAudioPlayer::Playing) return dsPlaying;
    return dsReady;
}

void CdioCDReader::Door(bool close) {
    if (device_.isEmpty()) return;
    if (!close) StopAudio();
    if (isImage()) {
        doorOpen_ = !close;
        refresh();
        return;
    }
    const QByteArray device = NameToBytes(device_);
    releaseDisc();
    if (close)
        cdio_close_tray(device.constData(), nullptr);
    else
        cdio_eject_media_drive(device.constData());
}

QList<CDTrack> CdioCDReader::Tracks() const {
    refresh();
    return tracks_;
}

CdAudioPlayer& CdioCDReader::player() {
    if (!player_) player_ = std::make_unique<CdAudioPlayer>();
    return *player_;
}

quint32 CdioCDReader::Position() const {
    if (!player_) return FromFrames(stoppedAt_);
    return FromFrames(player_->position() + kPregap);
}

void CdioCDReader::PlayAudioTrack(int index) {
    const QList<CDTrack> tracks = Tracks();
    if (index < 0 || index >= tracks.size()) return;
    PlayAudioRange(tracks[index].StartPosition, tracks[index].Length);
}

void CdioCDReader::PlayAudioRange(quint32 start, quint32 length) {
    if (!DiscPresent()) return;
    const qint64 first = std::max<qint64>(ToFrames(start) - kPregap, 0);
    // A range past the disc's end plays to the end; one wholly past it ends at once.
    const qint64 count = std::min<qint64>(ToFrames(length), leadOut_ - first);
    player().play(device_, first, std::max<qint64>(count, 0));
}

void CdioCDReader::StopAudio() {
    if (player_) player_->stop();
}

void CdioCDReader::PauseAudio() {
    if (player_) player_->pause();
}

void CdioCDReader::CopyTrack(int index, const QString& fileName) {
    const QList<CDTrack> tracks = Tracks();
    if (!canCopy(index, copying_)) return;
    CdRipper::Job job;
    job.device = device_;
    job.first = ToFrames(tracks[index].StartPosition) - kPregap;
    job.count = ToFrames(tracks[index].Length);
    job.fileName = fileName;
    job.format = CopyFormat();
    job.blockCount = BlockCount();
    job.copyMode = CopyMode();
    job.deviceType = DeviceType();
    copying_ = true;
    copyStart_ = job.first + kPregap;
    copyPosition_ = copyStart_;
    job_.start([this, job](const BackgroundJob::Run& run) {
        CdRipper::Callbacks callbacks;
        callbacks.started = [this, &run] { run.report([this] { emit CopyStarted(); }); };
        callbacks.progress = [this, start = copyStart_](qint64 done) {
            copyPosition_ = start + done;
        };
        callbacks.stop = [&run] { return run.stopRequested(); };
        const CdRipper::Outcome outcome = CdRipper::run(job, callbacks);
        if (outcome == CdRipper::Outcome::ReadFailed) run.report([this] { emit CopyError(); });
        if (outcome == CdRipper::Outcome::WriteFailed)
            run.report([this] { emit CopyWriteFailed(); });
        run.report([this] { endCopy(); });
    });
}

void CdioCDReader::endCopy() {
    copying_ = false;
    emit CopyFinished();
}

void CdioCDReader::StopCopy() {
    if (!copying_) return;
    // The worker's own last reports are dropped with the run; the end is told from here.
    job_.stop();
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (copying_) endCopy();
        },
        Qt::QueuedConnection);
}

}  // namespace cantovel
