#include "platform/mp3decoder/Mpg123Mp3Decoder.h"

#include <mpg123.h>
#include <sndfile.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <mutex>
#include <vector>

#include "app/FileNames.h"
#include "platform/wavechain/SoundSink.h"
#include "platform/wavechain/StagedOutput.h"

namespace cantovel {

namespace {

void initMpg123() {
    static std::once_flag once;
    std::call_once(once, [] { mpg123_init(); });
}

std::shared_ptr<mpg123_handle> openStream(const QString& path, long* rate, int* channels) {
    initMpg123();
    int error = MPG123_OK;
    std::shared_ptr<mpg123_handle> stream(mpg123_new(nullptr, &error), [](mpg123_handle* h) {
        mpg123_close(h);
        mpg123_delete(h);
    });
    if (!stream) return nullptr;
    mpg123_param(stream.get(), MPG123_ADD_FLAGS, MPG123_QUIET, 0);
    const QByteArray name = NameToBytes(path);
    int encoding = 0;
    if (mpg123_open(stream.get(), name.constData()) != MPG123_OK ||
        mpg123_getformat(stream.get(), rate, channels, &encoding) != MPG123_OK)
        return nullptr;
    // One output format for the whole file: 16-bit at the stream's rate and channels.
    mpg123_format_none(stream.get());
    if (mpg123_format(stream.get(), *rate, *channels, MPG123_ENC_SIGNED_16) != MPG123_OK)
        return nullptr;
    return stream;
}

}  // namespace

Mpg123Mp3Decoder::Mpg123Mp3Decoder(QObject* parent) : Mp3Decoder(parent) {}

Mpg123Mp3Decoder::~Mpg123Mp3Decoder() {
    endRun();
}

qint16 Mpg123Mp3Decoder::SetFiles(const QString& input, const QString& output) {
    clearError();
    endRun();
    stream_.reset();
    frameTotal_ = 0;
    writeFailed_ = false;
    writeError_.clear();

    long rate = 0;
    int channels = 0;
    // A refused source is answered, not raised: the window ends its run there.
    auto stream = openStream(input, &rate, &channels);
    if (!stream) return SourceNotMpeg;

    stream_ = std::move(stream);
    output_ = output;
    rate_ = rate;
    channels_ = channels;
    frameTotal_ = qint32(std::max<off_t>(1, mpg123_framelength(stream_.get())));
    return FilesAccepted;
}

void Mpg123Mp3Decoder::StartDecode() {
    clearError();
    if (!stream_ || job_.busy()) return;

    auto wav = std::make_shared<SoundSink>();
    std::shared_ptr<mpg123_handle> stream = std::exchange(stream_, nullptr);
    // Written aside and put in place when complete: an older output is never left cut
    // short. A folder that takes no file ends the run as a failed write.
    auto staged = std::make_shared<StagedOutput>(output_);
    if (!staged->create() ||
        !wav->open(staged->path(), SF_FORMAT_WAV | SF_FORMAT_PCM_16, int(rate_), channels_)) {
        const int error = staged->error() ? staged->error() : wav->openErrno();
        staged->drop();
        job_.start([this, error](const BackgroundJob::Run& run) {
            run.report([this, error] { finishRun(error ? error : EIO); });
        });
        return;
    }
    staged_ = staged;

    const qint32 total = frameTotal_;
    const int channels = channels_;
    job_.start([this, stream, wav, total, channels, staged](const BackgroundJob::Run& run) {
        std::vector<short> pcm(std::max<size_t>(mpg123_outblock(stream.get()), 1 << 16) / 2);
        qint32 reported = 0;
        const qint32 step = std::max<qint32>(1, total / 100);
        for (;;) {
            if (run.stopRequested()) return;
            size_t bytes = 0;
            const int status =
                mpg123_read(stream.get(), pcm.data(), pcm.size() * sizeof(short), &bytes);
            const qint64 frames = qint64(bytes / sizeof(short)) / channels;
            if (frames > 0 && !wav->write(pcm.data(), frames)) {
                const int error = wav->writeErrno();
                wav->close();
                staged->fail();
                run.report([this, error] { finishRun(error); });
                return;
            }
            if (status != MPG123_OK && status != MPG123_NEW_FORMAT) break;
            const qint32 done = std::min(total, qint32(mpg123_tellframe(stream.get())));
            if (done - reported >= step) {
                reported = done;
                run.report([this, done] { emit DecodeProgress(done); });
            }
        }
        // Closing writes the final lengths into the header: part of the output too.
        const bool closed = wav->close();
        int error = closed ? 0 : wav->writeErrno();
        if (!closed)
            staged->fail();
        else if (!staged->keep())
            error = staged->error();
        run.report([this, total, error] {
            if (!error) emit DecodeProgress(total);
            finishRun(error);
        });
    });
}

void Mpg123Mp3Decoder::finishRun(int writeError) {
    staged_.reset();
    if (writeError) {
        writeFailed_ = true;
        writeError_ = systemErrorText(writeError);
    }
    emit DecodeDone();
}

void Mpg123Mp3Decoder::endRun() {
    job_.stop();
    // What a stopped run wrote stays, under the output's name.
    if (staged_) staged_->keep();
    staged_.reset();
}

void Mpg123Mp3Decoder::StopDecode() {
    endRun();
}

}  // namespace cantovel
