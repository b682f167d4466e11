#include "platform/mp3encoder/LameMp3Encoder.h"

#include <lame/lame.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "app/FileNames.h"
#include "platform/wavechain/ConvertingReader.h"
#include "platform/wavechain/SoundSink.h"
#include "platform/wavechain/StagedOutput.h"

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
    endRun();
}

int LameMp3Encoder::lameInputRate(int rate) {
    for (int mpeg : kMpegRates)
        if (mpeg >= rate) return mpeg;
    return kMpegRates[std::size(kMpegRates) - 1];
}

qint16 LameMp3Encoder::SetFiles(const QString& input, const QString& output) {
    clearError();
    endRun();
    source_.reset();
    frameTotal_ = 0;
    writeFailed_ = false;
    writeError_.clear();

    // A refused source is answered, not raised: the window ends its run there.
    auto source = std::make_unique<AudioSource>();
    if (!source->open(input)) return SourceNotAudio;
    if (source->isTruncatedWav()) return SourceDamaged;
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

    // Written aside and put in place when complete: an older output is never left cut
    // short. A folder that takes no file ends the run as a failed write.
    auto staged = std::make_shared<StagedOutput>(output_);
    std::shared_ptr<OutputFile> file;
    int openError = 0;
    if (!staged->create()) {
        openError = staged->error();
    } else {
        file = std::make_shared<OutputFile>(
            std::fopen(NameToBytes(staged->path()).constData(), "wb+"));
        if (!file->get()) openError = errno ? errno : EIO;
    }
    if (openError) {
        staged->drop();
        source_.reset();
        job_.start([this, openError](const BackgroundJob::Run& run) {
            run.report([this, openError] { finishRun(openError); });
        });
        return;
    }
    staged_ = staged;
    std::setvbuf(file->get(), nullptr, _IOFBF, 1 << 16);

    std::shared_ptr<AudioSource> source(std::move(source_));
    const qint32 total = frameTotal_;
    job_.start([this, source, total, inRate, channels,
                lame = std::shared_ptr<lame_global_flags>(lame.release(), LameCloser()), file,
                staged](const BackgroundJob::Run& run) {
        ConvertingReader reader(*source, channels, inRate);
        if (!reader.isValid()) {
            staged->drop();
            run.report([this] { finishRun(0); });
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
                const int error = bytes < 0 ? EIO : errno;
                staged->fail();
                run.report([this, error] { finishRun(error); });
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
        const int error = written ? 0 : errno;
        if (!written)
            staged->fail();
        else if (!staged->keep())
            written = false;
        run.report([this, total, written, error, staged] {
            if (!written) {
                finishRun(error ? error : staged->error());
                return;
            }
            emit EncodeProgress(total);
            finishRun(0);
        });
    });
}

void LameMp3Encoder::finishRun(int writeError) {
    staged_.reset();
    if (writeError) {
        writeFailed_ = true;
        writeError_ = systemErrorText(writeError);
    }
    emit EncodeDone();
}

void LameMp3Encoder::endRun() {
    job_.stop();
    // What a stopped run wrote stays, under the output's name.
    if (staged_) staged_->keep();
    staged_.reset();
}

void LameMp3Encoder::Stop() {
    endRun();
}

}  // namespace cantovel
