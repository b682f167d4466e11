#include "platform/mp3encoder/LameMp3Encoder.h"

#include <lame/lame.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "platform/wavechain/ConvertingReader.h"
#include "platform/wavechain/SoundSink.h"

namespace cantovel {

namespace {

constexpr int kMpegRates[] = {8000, 11025, 12000, 16000, 22050, 24000, 32000, 44100, 48000};

struct LameCloser {
    void operator()(lame_global_flags* gf) const { lame_close(gf); }
};
using LameHandle = std::unique_ptr<lame_global_flags, LameCloser>;

// The output file; closed by close() when its errors matter, else when it goes.
struct OutputFile {
    explicit OutputFile(FILE* f) : file(f) {}
    ~OutputFile() {
        if (file) std::fclose(file);
    }
    bool close() { return std::fclose(std::exchange(file, nullptr)) == 0; }
    FILE* get() const { return file; }
    FILE* file;
};

bool writeAll(FILE* file, const unsigned char* data, int size) {
    return size <= 0 || std::fwrite(data, 1, size_t(size), file) == size_t(size);
}

// No MP3 rate is below 8 kbit/s, so a figure under 1000 can only be in kbit/s already.
int kbitPerSecond(qint32 bitrate) {
    return std::max(8, bitrate < 1000 ? int(bitrate) : int((bitrate + 500) / 1000));
}

}  // namespace

LameMp3Encoder::LameMp3Encoder(QObject* parent) : Mp3Encoder(parent) {}

LameMp3Encoder::~LameMp3Encoder() {
    job_.stop();
}

int LameMp3Encoder::lameInputRate(int rate) {
    for (int mpeg : kMpegRates)
        if (mpeg >= rate) return mpeg;
    return kMpegRates[std::size(kMpegRates) - 1];
}

qint16 LameMp3Encoder::SetFiles(const QString& input, const QString& output) {
    clearError();
    job_.stop();
    source_.reset();
    frameTotal_ = 0;
    writeFailed_ = false;

    auto source = std::make_unique<AudioSource>();
    if (!source->open(input)) {
        // Raised, as the decoder does for a file without MPEG audio: the window tells the
        // user and goes on with its next file.
        raise(QStringLiteral("The source file is missing, unreadable or holds no sound."));
        return SourceNotAudio;
    }
    if (source->isTruncatedWav()) {
        raise(
            QStringLiteral("The source WAV file is cut short: it holds less sound than its "
                           "header gives."));
        return SourceDamaged;
    }
    const QFileInfo folder(QFileInfo(output).absolutePath());
    if (output.isEmpty() || !folder.isDir() || !folder.isWritable()) return OutputNotWritable;

    source_ = std::move(source);
    output_ = output;
    return FilesAccepted;
}

void LameMp3Encoder::Start() {
    clearError();
    if (!source_ || job_.busy()) return;

    const int sourceRate = source_->sampleRate();
    const int inRate = lameInputRate(sourceRate);
    const int channels = (DownMix() || source_->channels() == 1) ? 1 : 2;
    const qint64 inFrames = source_->frames() * inRate / sourceRate;

    LameHandle lame(lame_init());
    if (!lame) {
        raise(QStringLiteral("The MP3 encoder could not be set up."));
        return;
    }
    lame_set_in_samplerate(lame.get(), inRate);
    lame_set_num_channels(lame.get(), channels);
    lame_set_mode(lame.get(), channels == 1 ? MONO : JOINT_STEREO);
    lame_set_brate(lame.get(), kbitPerSecond(Bitrate()));
    lame_set_VBR(lame.get(), vbr_off);
    lame_set_num_samples(lame.get(), (unsigned long)inFrames);
    // The Info tag written over the first frame at the end tells decoders the exact
    // length, so the MP3 decodes to as many samples as the source had.
    lame_set_bWriteVbrTag(lame.get(), 1);
    if (lame_init_params(lame.get()) < 0) {
        raise(QStringLiteral("The MP3 encoder refuses a bit rate of %1 at %2 Hz.")
                  .arg(Bitrate())
                  .arg(sourceRate));
        return;
    }
    frameTotal_ = std::max(1, lame_get_totalframes(lame.get()));

    const QByteArray name = QFile::encodeName(output_);
    auto file = std::make_shared<OutputFile>(std::fopen(name.constData(), "wb+"));
    if (!file->get()) {
        const int error = errno;
        if (isDiskFullError(error)) {
            // A full disk shows as a run that ends at once with nothing written.
            source_.reset();
            job_.start(
                [this](const BackgroundJob::Run& run) { run.report([this] { finishRun(true); }); });
            return;
        }
        raise(QStringLiteral("The MP3 file can't be created: %1")
                  .arg(QString::fromLocal8Bit(std::strerror(error))));
        return;
    }
    std::setvbuf(file->get(), nullptr, _IOFBF, 1 << 16);

    std::shared_ptr<AudioSource> source(std::move(source_));
    const qint32 total = frameTotal_;
    job_.start([this, source, total, inRate, channels,
                lame = std::shared_ptr<lame_global_flags>(lame.release(), LameCloser()),
                file](const BackgroundJob::Run& run) {
        ConvertingReader reader(*source, channels, inRate);
        if (!reader.isValid()) {
            run.report([this] { finishRun(false); });
            return;
        }
        std::vector<unsigned char> mp3;
        qint32 reported = 0;
        const qint32 step = std::max<qint32>(1, total / 100);
        bool more = true;
        while (more) {
            if (run.stopRequested()) return;
            more = reader.next();
            const qint64 frames = more ? reader.frames() : 0;
            mp3.resize(size_t(frames * 5 / 4 * 2) + 7200);
            int bytes = 0;
            if (frames > 0) {
                bytes =
                    channels == 2
                        ? lame_encode_buffer_interleaved_ieee_float(
                              lame.get(), reader.data(), int(frames), mp3.data(), int(mp3.size()))
                        : lame_encode_buffer_ieee_float(lame.get(), reader.data(), reader.data(),
                                                        int(frames), mp3.data(), int(mp3.size()));
            }
            if (!more) bytes = lame_encode_flush(lame.get(), mp3.data(), int(mp3.size()));
            if (bytes < 0 || !writeAll(file->get(), mp3.data(), bytes)) {
                run.report([this] { finishRun(true); });
                return;
            }
            const qint32 done = std::min(total, qint32(lame_get_frameNum(lame.get())));
            if (more && done - reported >= step) {
                reported = done;
                run.report([this, done] { emit EncodeProgress(done); });
            }
        }
        unsigned char tag[2880];
        const size_t tagSize = lame_get_lametag_frame(lame.get(), tag, sizeof tag);
        bool written = std::fflush(file->get()) == 0;
        if (written && tagSize > 0 && tagSize <= sizeof tag)
            written = std::fseek(file->get(), 0, SEEK_SET) == 0 &&
                      std::fwrite(tag, 1, tagSize, file->get()) == tagSize;
        // Closed here, so the file is complete on disk before EncodeDone is heard.
        written = file->close() && written;
        if (!written) {
            run.report([this] { finishRun(true); });
            return;
        }
        run.report([this, total] {
            emit EncodeProgress(total);
            finishRun(false);
        });
    });
}

void LameMp3Encoder::finishRun(bool writeFailed) {
    if (writeFailed) writeFailed_ = true;
    emit EncodeDone();
}

void LameMp3Encoder::Stop() {
    job_.stop();
}

}  // namespace cantovel
