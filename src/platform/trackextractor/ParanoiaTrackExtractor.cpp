#include "platform/trackextractor/ParanoiaTrackExtractor.h"

#include <cdio/cdio.h>

#include <algorithm>

#include "app/FileNames.h"
#include "platform/Components.h"
#include "platform/cddrives/CdDrives.h"
#include "platform/cdreader/CdRipper.h"
#include "platform/mediaplayer/MediaPlayer.h"
#include "platform/wavechain/StagedOutput.h"

namespace cantovel {

namespace {

// Sectors a second.
constexpr qint64 kSectorRate = CDIO_CD_FRAMES_PER_SEC;

// A copy of `count` sectors from `first` into `fileName` in CD quality, in full paranoia.
CdRipper::Job copyJob(const QString& device, qint64 first, qint64 count, const QString& fileName) {
    CdRipper::Job job;
    job.device = device;
    job.first = first;
    job.count = count;
    job.fileName = fileName;
    job.copyMode = 0;
    return job;
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
    toc_ = readDiscToc(device_);
}

const DiscTrack* ParanoiaTrackExtractor::audioTrack(int track) const {
    const DiscTrack* t = toc_.track(track);
    return t && t->isAudio() ? t : nullptr;
}

qint32 ParanoiaTrackExtractor::TrackLength(int track) {
    const DiscTrack* t = toc_.track(track);
    return t ? qint32(qint64(t->sectors) * 1000 / kSectorRate) : 0;
}

qint16 ParanoiaTrackExtractor::ExtractTrack(QString& fileName, int track) {
    clearError();
    job_.stop();
    writeFailed_ = false;
    writeError_.clear();
    setReadFailed(false);
    if (device_.isEmpty() || toc_.tracks.isEmpty()) return NoDisc;
    const DiscTrack* t = audioTrack(track);
    if (!t) return NoSuchTrack;
    const CdRipper::Job job = copyJob(device_, t->first, t->sectors, fileName);
    job_.start([this, job](const BackgroundJob::Run& run) {
        run.report([this] { emit ExtractBegin(); });
        qint32 reported = -1;
        CdRipper::Callbacks callbacks;
        callbacks.progress = [&](qint64 done) {
            const qint32 permille = qint32(done * 1000 / job.count);
            if (permille - reported >= 5 || done == job.count) {
                reported = permille;
                run.report([this, permille] { emit ExtractProgress(permille); });
            }
        };
        callbacks.stop = [&run] { return run.stopRequested(); };
        int writeError = 0;
        // A track of which nothing is on the disc, or that can't be read to its end, ends
        // the run as a read failure, with the WAV as far as it was read.
        const CdRipper::Outcome outcome = CdRipper::run(job, callbacks, &writeError);
        if (run.stopRequested()) return;
        const bool readFailed = outcome == CdRipper::Outcome::ReadFailed;
        if (outcome != CdRipper::Outcome::WriteFailed) writeError = 0;
        run.report([this, writeError, readFailed] { finishRun(writeError, readFailed); });
    });
    return Started;
}

void ParanoiaTrackExtractor::finishRun(int writeError, bool readFailed) {
    if (writeError) {
        writeFailed_ = true;
        writeError_ = systemErrorText(writeError);
    }
    setReadFailed(readFailed);
    emit ExtractDone();
}

void ParanoiaTrackExtractor::Abort() {
    job_.stop();
}

qint16 ParanoiaTrackExtractor::Preview(qint16 track, qint16 startSecond, qint16 seconds) {
    EndPreview();
    const DiscTrack* t = audioTrack(track);
    if (!t || t->sectors <= 0 || seconds <= 0) return NoSuchTrack;
    if (!player_) player_ = Components::create<MediaPlayer>();
    if (!player_) return NoDisc;
    previewDir_ = std::make_unique<QTemporaryDir>();
    if (!previewDir_->isValid()) return OutputNotWritable;
    const QString wav = previewDir_->filePath(QStringLiteral("preview.wav"));
    const qint64 first = std::min<qint64>(t->first + startSecond * kSectorRate, t->end() - 1);
    const qint64 count = std::min<qint64>(seconds * kSectorRate, t->end() - first);
    const CdRipper::Job job = copyJob(device_, first, count, wav);
    previewJob_.start([this, job](const BackgroundJob::Run& run) {
        CdRipper::Callbacks callbacks;
        callbacks.stop = [&run] { return run.stopRequested(); };
        if (CdRipper::run(job, callbacks) != CdRipper::Outcome::Done) return;
        run.report([this, wav = job.fileName] {
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
