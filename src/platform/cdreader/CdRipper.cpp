#include "platform/cdreader/CdRipper.h"

#include <cdio/cdio.h>
#include <cdio/paranoia/cdda.h>
#include <cdio/paranoia/paranoia.h>
#include <cdio/read.h>

#include <QFile>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <vector>

#include "app/FileNames.h"
#include "platform/cdaudio/CdioQuiet.h"
#include "platform/cddrives/DiscImageSource.h"
#include "platform/wavechain/AudioSource.h"
#include "platform/wavechain/Resampler.h"
#include "platform/wavechain/SoundSink.h"
#include "platform/wavechain/StagedOutput.h"

namespace cantovel {

namespace {

constexpr int kSectorSamples = CDIO_CD_FRAMESIZE_RAW / 2;  // 16-bit samples, both channels
constexpr int kCdRate = 44100;
// Sectors a read at most, whatever block count the user typed: a read of more than a
// drive takes in one command only fails.
constexpr int kMaxBlockCount = 256;

// The disc opened for reading audio; everything released however the copy ends.
struct Drive {
    CdIo_t* cdio = nullptr;
    cdrom_drive_t* cdda = nullptr;
    cdrom_paranoia_t* paranoia = nullptr;

    ~Drive() {
        if (paranoia) cdio_paranoia_free(paranoia);
        // The drive structure owns the libcdio handle it was made from.
        if (cdda)
            cdio_cddap_close(cdda);
        else if (cdio)
            cdio_destroy(cdio);
    }

    bool open(const CdRipper::Job& job) {
        cdio = openDisc(job.device);
        if (!cdio) return false;
        // Sectors past the disc's end (an image's BIN shorter than its CUE says) are not
        // there to read; paranoia would hand out silence for them.
        const lsn_t end = cdio_get_track_lsn(cdio, CDIO_CDROM_LEADOUT_TRACK);
        if (job.count <= 0 || end == CDIO_INVALID_LSN || job.first + job.count > end) return false;
        const bool image = cdio_get_driver_id(cdio) != DRIVER_LINUX;
        cdda = cdio_cddap_identify_cdio(cdio, CDDA_MESSAGE_FORGETIT, nullptr);
        // An image with a track past the end of its BIN is one paranoia will not open; it
        // reads the same every time, and is read as it stands.
        if (!cdda) return image;
        // Every drive of a named type gives little-endian samples, and so does every image;
        // only AutoDetect on a drive has paranoia look at the audio to decide.
        if (image || job.deviceType != 0) cdda->bigendianp = 0;
        if (cdio_cddap_open(cdda) != 0) {
            if (!image) return false;
            cdio_cddap_close_no_free_cdio(cdda);
            cdda = nullptr;
            return true;
        }
        cdda->nsectors = std::clamp(job.blockCount, 1, kMaxBlockCount);
        if (job.copyMode != 1) {
            paranoia = cdio_paranoia_init(cdda);
            if (!paranoia) return false;
            cdio_paranoia_modeset(paranoia, job.copyMode == 0
                                                ? PARANOIA_MODE_FULL ^ PARANOIA_MODE_NEVERSKIP
                                                : PARANOIA_MODE_OVERLAP);
            cdio_paranoia_seek(paranoia, int32_t(job.first), SEEK_SET);
        }
        return true;
    }

    // Reads up to `sectors` sectors at `lsn` into `out`; the sectors read, or -1.
    long read(qint64 lsn, int sectors, std::vector<short>& out) {
        out.resize(size_t(sectors) * kSectorSamples);
        if (!cdda)
            return cdio_read_audio_sectors(cdio, out.data(), lsn_t(lsn), unsigned(sectors)) ==
                           DRIVER_OP_SUCCESS
                       ? sectors
                       : -1;
        if (!paranoia) {
            long done = 0;
            while (done < sectors) {
                const long got = cdio_cddap_read(cdda, out.data() + done * kSectorSamples,
                                                 lsn_t(lsn + done), sectors - done);
                if (got <= 0) return -1;
                done += got;
            }
            return done;
        }
        for (int i = 0; i < sectors; ++i) {
            const int16_t* sector = cdio_paranoia_read_limited(paranoia, nullptr, 20);
            if (!sector) return -1;
            std::memcpy(out.data() + size_t(i) * kSectorSamples, sector, CDIO_CD_FRAMESIZE_RAW);
        }
        return sectors;
    }
};

// Writes CD samples into the file, converting them when it holds another format.
class Writer {
  public:
    explicit Writer(const WaveFormat& format) : format_(format) {}

    bool open(const QString& fileName) {
        if (!sink_.open(fileName, format_.sndfileFormat(), format_.sampleRate, format_.channels))
            return false;
        if (converting() && format_.sampleRate != kCdRate)
            return resampler_.open(kCdRate, format_.sampleRate, format_.channels);
        return true;
    }

    bool write(const std::vector<short>& cd, qint64 frames) {
        if (!converting()) return sink_.write(cd.data(), frames);
        floats_.resize(size_t(frames) * 2);
        for (size_t i = 0; i < floats_.size(); ++i) floats_[i] = float(cd[i]) / 32768.0f;
        mixed_.resize(size_t(frames) * size_t(format_.channels));
        mixChannels(floats_.data(), 2, mixed_.data(), format_.channels, frames);
        return put(mixed_.data(), frames);
    }

    // Gives out what the resampler still holds and writes the header.
    bool close() {
        bool ok = true;
        if (converting() && format_.sampleRate != kCdRate) ok = put(nullptr, 0);
        return sink_.close() && ok;
    }

    // The system's error numbers of a failed open, and of a failed write or close.
    int openError() const { return sink_.openErrno(); }
    int writeError() const { return sink_.writeErrno(); }

  private:
    bool converting() const {
        return !(format_.encoding == WaveFormat::Pcm16 && format_.sampleRate == kCdRate &&
                 format_.channels == 2);
    }
    bool put(const float* data, qint64 frames) {
        if (format_.sampleRate == kCdRate) return sink_.write(data, frames);
        resampled_.clear();
        if (!resampler_.process(data, frames, resampled_)) return false;
        const qint64 out = qint64(resampled_.size()) / format_.channels;
        return out == 0 || sink_.write(resampled_.data(), out);
    }

    WaveFormat format_;
    SoundSink sink_;
    Resampler resampler_;
    std::vector<float> floats_, mixed_, resampled_;
};

}  // namespace

CdRipper::Outcome CdRipper::run(const Job& job, const Callbacks& callbacks, int* writeError) {
    quietCdio();
    Drive drive;
    if (!drive.open(job)) return Outcome::ReadFailed;
    // Written aside and put in place at the end, so an older file of the name is never
    // left cut short by a copy that fails.
    StagedOutput staged(job.fileName);
    Writer writer(job.format);
    const auto failedWrite = [&](int error) {
        if (writeError) *writeError = error ? error : EIO;
        return Outcome::WriteFailed;
    };
    if (!staged.create()) return failedWrite(staged.error());
    if (!writer.open(staged.path())) return failedWrite(writer.openError());
    if (callbacks.started) callbacks.started();

    std::vector<short> block;
    const int blockCount = std::clamp(job.blockCount, 1, kMaxBlockCount);
    qint64 done = 0;
    while (done < job.count) {
        if (callbacks.stop && callbacks.stop()) {
            // What was read so far is a valid WAV of its own, and stays.
            writer.close();
            return staged.keep() ? Outcome::Stopped : failedWrite(staged.error());
        }
        const int sectors = int(std::min<qint64>(blockCount, job.count - done));
        const long got = drive.read(job.first + done, sectors, block);
        if (got <= 0) {
            writer.close();
            staged.fail();
            return Outcome::ReadFailed;
        }
        if (!writer.write(block, qint64(got) * kSectorSamples / 2)) {
            writer.close();
            staged.fail();
            return failedWrite(writer.writeError());
        }
        done += got;
        if (callbacks.progress) callbacks.progress(done);
    }
    if (!writer.close()) {
        staged.fail();
        return failedWrite(writer.writeError());
    }
    return staged.keep() ? Outcome::Done : failedWrite(staged.error());
}

}  // namespace cantovel
