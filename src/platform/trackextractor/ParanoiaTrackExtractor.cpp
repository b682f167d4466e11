#include "platform/trackextractor/ParanoiaTrackExtractor.h"

#include <cdio/cdio.h>
#include <cdio/paranoia/cdda.h>
#include <cdio/paranoia/paranoia.h>
#include <cdio/read.h>
#include <sndfile.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>

#include "app/FileNames.h"
#include "platform/Components.h"
#include "platform/cddrives/CdDrives.h"
#include "platform/cddrives/DiscImageSource.h"
#include "platform/mediaplayer/MediaPlayer.h"
#include "platform/wavechain/SoundSink.h"
#include "platform/wavechain/StagedOutput.h"

namespace cantovel {

namespace {

constexpr int kFramesPerSector = CDIO_CD_FRAMESIZE_RAW / 4;  // 588 stereo 16-bit frames

struct CdioCloser {
    void operator()(CdIo_t* cdio) const { cdio_destroy(cdio); }
};
using CdioHandle = std::unique_ptr<CdIo_t, CdioCloser>;

CdioHandle openDisc(const QString& device) {
    if (device.isEmpty()) return nullptr;
    return CdioHandle(cantovel::openDisc(device));
}

QList<ParanoiaTrackExtractor::Track> readToc(const QString& device) {
    QList<ParanoiaTrackExtractor::Track> tracks;
    CdioHandle cdio = openDisc(device);
    if (!cdio) return tracks;
    const track_t first = cdio_get_first_track_num(cdio.get());
    const track_t count = cdio_get_num_tracks(cdio.get());
    if (first == CDIO_INVALID_TRACK || count == CDIO_INVALID_TRACK) return tracks;
    // An image's sectors end where its BIN does, whatever its CUE says; paranoia would
    // hand out silence for the rest.
    const lsn_t end = cdio_get_track_lsn(cdio.get(), CDIO_CDROM_LEADOUT_TRACK);
    for (track_t t = first; t < first + count; ++t) {
        ParanoiaTrackExtractor::Track track;
        track.firstSector = cdio_get_track_lsn(cdio.get(), t);
        track.lastSector = std::min(cdio_get_track_last_lsn(cdio.get(), t), end - 1);
        track.audio = cdio_get_track_format(cdio.get(), t) == TRACK_FORMAT_AUDIO;
        tracks << track;
    }
    return tracks;
}

// Reads sectors `first` to `last` through paranoia into `sink`. `progress` hears each
// sector done; false from it, or from the read, ends the work with false.
// A failed write sets `writeFailed` when given.
bool extractSectors(const QString& device, qint32 first, qint32 last, SoundSink& sink,
                    const std::function<bool(qint32 done, qint32 total)>& progress,
                    bool* writeFailed = nullptr) {
    CdioHandle cdio = openDisc(device);
    if (!cdio) return false;
    const qint32 total = last - first + 1;
    const auto put = [&](const int16_t* samples, qint32 done) {
        if (!sink.write(samples, kFramesPerSector)) {
            if (writeFailed) *writeFailed = true;
            return false;
        }
        return progress(done + 1, total);
    };
    if (cdio_get_driver_id(cdio.get()) != DRIVER_LINUX) {
        // An image reads the same every time: it is read as it stands. (Paranoia would not
        // even open one whose CUE puts a track past the end of its BIN.)
        int16_t sector[CDIO_CD_FRAMESIZE_RAW / 2];
        for (qint32 done = 0; done < total; ++done)
            if (cdio_read_audio_sectors(cdio.get(), sector, first + done, 1) != DRIVER_OP_SUCCESS ||
                !put(sector, done))
                return false;
        return true;
    }
    cdrom_drive_t* drive = cdio_cddap_identify_cdio(cdio.get(), CDDA_MESSAGE_FORGETIT, nullptr);
    if (!drive) return false;
    std::unique_ptr<cdrom_drive_t, void (*)(cdrom_drive_t*)> driveOwner(
        drive, [](cdrom_drive_t* d) { cdio_cddap_close_no_free_cdio(d); });
    if (cdio_cddap_open(drive) != 0) return false;
    std::unique_ptr<cdrom_paranoia_t, void (*)(cdrom_paranoia_t*)> paranoia(
        cdio_paranoia_init(drive), cdio_paranoia_free);
    if (!paranoia) return false;
    // Full checking, but a sector that never reads the same twice is taken as read
    // rather than stalling the run.
    cdio_paranoia_modeset(paranoia.get(), PARANOIA_MODE_FULL ^ PARANOIA_MODE_NEVERSKIP);
    cdio_paranoia_seek(paranoia.get(), first, SEEK_SET);
    for (qint32 done = 0; done < total; ++done) {
        const int16_t* samples = cdio_paranoia_read(paranoia.get(), nullptr);
        if (!samples || !put(samples, done)) return false;
    }
    return true;
}

}  // namespace

ParanoiaTrackExtractor::ParanoiaTrackExtractor(QObject* parent) : TrackExtractor(parent) {}

ParanoiaTrackExtractor::~ParanoiaTrackExtractor() {
    job_.stop();
    previewJob_.stop();
}

qint16 ParanoiaTrackExtractor::Initialize() {
    clearError();
    // libcdio needs no set-up of its own beyond its drivers.
    return cdio_init() ? 0 : 1;
}

QList<ParanoiaTrackExtractor::Drive> ParanoiaTrackExtractor::drives() {
    QList<Drive> all;
    if (Components::hasService<CdDrives>()) {
        for (const CdDrive& d : CdDrives::get().Drives()) all << Drive{d.Name, d.Device};
        return all;
    }
    char** devices = cdio_get_devices(DRIVER_DEVICE);
    for (char** d = devices; d && *d; ++d) {
        const QString device = NameFromBytes(*d);
        all << Drive{device, device};
    }
    cdio_free_device_list(devices);
    return all;
}

int ParanoiaTrackExtractor::DriveCount() {
    return int(drives().size());
}

QString ParanoiaTrackExtractor::DriveName(int index) {
    const QList<Drive> all = drives();
    return index >= 1 && index <= all.size() ? all[index - 1].name : QString();
}

void ParanoiaTrackExtractor::SelectDrive(int index) {
    const QList<Drive> all = drives();
    device_ = index >= 1 && index <= all.size() ? all[index - 1].device : QString();
    tracks_ = readToc(device_);
}

qint32 ParanoiaTrackExtractor::TrackLength(int track) {
    if (track < 1 || track > tracks_.size()) return 0;
    const Track& t = tracks_[track - 1];
    return qint32(qint64(t.lastSector - t.firstSector + 1) * 1000 / CDIO_CD_FRAMES_PER_SEC);
}

qint16 ParanoiaTrackExtractor::ExtractTrack(QString& fileName, int track) {
    clearError();
    job_.stop();
    writeFailed_ = false;
    writeError_.clear();
    if (device_.isEmpty() || tracks_.isEmpty()) return NoDisc;
    if (track < 1 || track > tracks_.size() || !tracks_[track - 1].audio) return NoSuchTrack;
    auto sink = std::make_shared<SoundSink>();
    const Track t = tracks_[track - 1];
    const QString device = device_;
    // A file that can't be made is a failed write, told at the end of the run like one
    // that fills the disk on the way.
    const bool opened = sink->open(fileName, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 44100, 2);
    const int openError = opened ? 0 : (sink->openErrno() ? sink->openErrno() : EIO);
    job_.start([this, t, device, sink, openError](const BackgroundJob::Run& run) {
        run.report([this] { emit ExtractBegin(); });
        if (openError) {
            run.report([this, openError] { finishRun(openError); });
            return;
        }
        qint32 reported = -1;
        bool writeFailed = false;
        // A track that can't be read to its end still ends the run, with the WAV as far
        // as it was written, as a stopped drive leaves it.
        extractSectors(
            device, t.firstSector, t.lastSector, *sink,
            [&](qint32 done, qint32 total) {
                if (run.stopRequested()) return false;
                const qint32 permille = qint32(qint64(done) * 1000 / total);
                if (permille - reported >= 5 || done == total) {
                    reported = permille;
                    run.report([this, permille] { emit ExtractProgress(permille); });
                }
                return true;
            },
            &writeFailed);
        if (run.stopRequested()) return;
        // Closing writes the lengths into the header: the file is whole before the end.
        const bool closed = sink->close();
        const int error = writeFailed || !closed ? sink->writeErrno() : 0;
        run.report([this, error] { finishRun(error); });
    });
    return Started;
}

void ParanoiaTrackExtractor::finishRun(int writeError) {
    if (writeError) {
        writeFailed_ = true;
        writeError_ = systemErrorText(writeError);
    }
    emit ExtractDone();
}

void ParanoiaTrackExtractor::Abort() {
    job_.stop();
}

qint16 ParanoiaTrackExtractor::Preview(qint16 track, qint16 startSecond, qint16 seconds) {
    EndPreview();
    if (track < 1 || track > tracks_.size() || !tracks_[track - 1].audio || seconds <= 0)
        return NoSuchTrack;
    if (!player_) player_ = Components::create<MediaPlayer>();
    if (!player_) return NoDisc;
    previewDir_ = std::make_unique<QTemporaryDir>();
    const QString wav = previewDir_->filePath(QStringLiteral("preview.wav"));
    auto sink = std::make_shared<SoundSink>();
    if (!previewDir_->isValid() || !sink->open(wav, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 44100, 2))
        return OutputNotWritable;
    const Track t = tracks_[track - 1];
    const qint32 first = std::min(t.lastSector, t.firstSector + startSecond * 75);
    const qint32 last = std::min(t.lastSector, first + seconds * 75 - 1);
    const QString device = device_;
    previewJob_.start([this, device, first, last, sink, wav](const BackgroundJob::Run& run) {
        extractSectors(device, first, last, *sink,
                       [&](qint32, qint32) { return !run.stopRequested(); });
        if (run.stopRequested() || !sink->close()) return;
        run.report([this, wav] {
            if (player_ && player_->setFileName(wav) == 0) player_->Play();
        });
    });
    return 0;
}

void ParanoiaTrackExtractor::EndPreview() {
    previewJob_.stop();
    if (player_) player_->setFileName(QString());
    previewDir_.reset();
}

}  // namespace cantovel
