#include "platform/mediaplayer/SongPlayback.h"

#include <pthread.h>
#include <pulse/context.h>
#include <pulse/mainloop.h>
#include <pulse/simple.h>
#include <sndfile.h>

#include <QFileInfo>
#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "app/FileNames.h"

namespace cantovel {

namespace {

// The sound formats tried here; anything else (films, ".m4a", ".mid", ...) is mpv's.
bool isSongName(const QString& path) {
    static const QStringList songs{"mp3",  "mp2", "mp1",  "wav",  "flac", "ogg", "oga",
                                   "opus", "aif", "aiff", "aifc", "au",   "snd"};
    const QFileInfo info(path);
    return songs.contains(info.suffix().toLower()) && info.isFile();
}

// Whether a sound server answers, asked once: without one mpv tries its other outputs.
bool soundServerAnswers() {
    pa_mainloop* loop = pa_mainloop_new();
    pa_context* context = pa_context_new(pa_mainloop_get_api(loop), "Cantovel");
    bool answers = false;
    if (context && pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0) {
        for (;;) {
            const pa_context_state_t state = pa_context_get_state(context);
            if (state == PA_CONTEXT_READY) answers = true;
            if (state == PA_CONTEXT_READY || !PA_CONTEXT_IS_GOOD(state)) break;
            if (pa_mainloop_iterate(loop, 1, nullptr) < 0) break;
        }
        pa_context_disconnect(context);
    }
    if (context) pa_context_unref(context);
    pa_mainloop_free(loop);
    return answers;
}

}  // namespace

SongPlayback::~SongPlayback() {
    close();
}

SongPlayback::Output SongPlayback::chosenOutput() {
    const QByteArray ao = qgetenv("CANTOVEL_AO");
    if (ao == "null")
        return qgetenv("CANTOVEL_MPV_UNTIMED") == "1" ? Output::NullUntimed : Output::Null;
    if (!ao.isEmpty() && !ao.startsWith("pulse")) return Output::None;
    static const bool answers = soundServerAnswers();
    return answers ? Output::Pulse : Output::None;
}

bool SongPlayback::open(const QString& path) {
    close();
    if (!isSongName(path)) return false;
    const Output output = chosenOutput();
    if (output == Output::None) return false;
    SF_INFO info;
    std::memset(&info, 0, sizeof info);
    SNDFILE* file = sf_open(NameToBytes(path).constData(), SFM_READ, &info);
    if (!file) return false;
    if (info.channels < 1 || info.samplerate < 1 || info.frames <= 0 || !info.seekable) {
        sf_close(file);
        return false;
    }
    file_ = file;
    rate_ = info.samplerate;
    channels_ = info.channels;
    frames_ = info.frames;
    output_ = output;
    heard_ = 0;
    atEnd_ = false;
    return true;
}

void SongPlayback::close() {
    halt();
    if (server_) pa_simple_free(std::exchange(server_, nullptr));
    if (file_) sf_close(file_);
    file_ = nullptr;
    frames_ = 0;
    heard_ = 0;
    atEnd_ = false;
}

double SongPlayback::duration() const {
    return file_ ? double(frames_) / rate_ : 0.0;
}

double SongPlayback::position() const {
    return file_ ? double(heard_) / rate_ : 0.0;
}

void SongPlayback::seek(double seconds) {
    if (!file_) return;
    const bool playing = thread_.joinable() && !atEnd_;
    halt();
    heard_ = std::clamp<qint64>(qint64(seconds * rate_ + 0.5), 0, frames_);
    atEnd_ = false;
    if (playing) play();
}

void SongPlayback::play() {
    if (!file_) return;
    halt();
    atEnd_ = false;
    {
        std::lock_guard lock(mutex_);
        halt_ = false;
    }
    thread_ = std::thread([this, from = heard_.load()] { run(from); });
}

void SongPlayback::pause() {
    halt();
}

void SongPlayback::setGains(float left, float right) {
    left_ = left;
    right_ = right;
}

void SongPlayback::halt() {
    if (!thread_.joinable()) return;
    {
        std::lock_guard lock(mutex_);
        halt_ = true;
    }
    wake_.notify_all();
    thread_.join();
}

bool SongPlayback::waitForHalt(std::chrono::steady_clock::time_point until) {
    std::unique_lock lock(mutex_);
    return wake_.wait_until(lock, until, [this] { return halt_; });
}

qint64 SongPlayback::heardFrom(pa_simple* server, qint64 from, qint64 written) const {
    const qint64 held = qint64(pa_simple_get_latency(server, nullptr)) * rate_ / 1000000;
    return std::clamp<qint64>(from + written - held, from, frames_);
}

void SongPlayback::run(qint64 from) {
    pthread_setname_np(pthread_self(), "cantovel/song");
    using Clock = std::chrono::steady_clock;
    const auto halted = [this] {
        std::lock_guard lock(mutex_);
        return halt_;
    };
    // One stream for the file, from its first play to its close: a new stream on the sound
    // server starts to sound up to a second and a half late, where one that is only
    // flushed resumes at once.
    if (output_ == Output::Pulse && !server_) {
        const pa_sample_spec format{PA_SAMPLE_FLOAT32NE, uint32_t(rate_), 2};
        const uint32_t second = uint32_t(pa_bytes_per_second(&format));
        // Half a second held in the server, asked for a tenth at a time: few wakeups.
        pa_buffer_attr attr;
        attr.maxlength = uint32_t(-1);
        attr.tlength = second / 2;
        // Playing starts with the first tenth: the server's own start waits for more than it
        // lets a writer give it, and comes late.
        attr.prebuf = second / 10;
        attr.minreq = second / 10;
        attr.fragsize = uint32_t(-1);
        server_ = pa_simple_new(nullptr, "Cantovel", PA_STREAM_PLAYBACK, nullptr, "Playback",
                                &format, nullptr, &attr, nullptr);
    }
    pa_simple* const server = server_;
    sf_seek(file_, from, SEEK_SET);
    const qint64 block = std::max(1, rate_ / 10);
    std::vector<float> in(size_t(block * channels_)), out(size_t(block * 2));
    qint64 written = 0;
    const Clock::time_point start = Clock::now();
    bool end = output_ == Output::Pulse && !server;  // no server: nothing can be heard
    while (!end && !halted()) {
        const qint64 read = sf_readf_float(file_, in.data(), block);
        if (read <= 0) {
            end = true;
            break;
        }
        const float left = left_, right = right_;
        for (qint64 i = 0; i < read; ++i) {
            const float* frame = &in[size_t(i * channels_)];
            out[size_t(2 * i)] = frame[0] * left;
            out[size_t(2 * i + 1)] = frame[channels_ > 1 ? 1 : 0] * right;
        }
        written += read;
        if (server) {
            if (pa_simple_write(server, out.data(), size_t(read) * 2 * sizeof(float), nullptr) <
                0) {
                // The server went away: the next play tries a new one.
                pa_simple_free(std::exchange(server_, nullptr));
                end = true;
                break;
            }
            heard_ = heardFrom(server, from, written);
        } else {
            if (output_ == Output::Null &&
                waitForHalt(start + std::chrono::microseconds(written * 1000000 / rate_)))
                break;
            heard_ = std::min(from + written, frames_);
        }
    }
    if (server && server_) {
        if (end) {
            pa_simple_drain(server, nullptr);
        } else {
            // Halted: what the server still holds was never heard, and plays on next time.
            heard_ = heardFrom(server, from, written);
            pa_simple_flush(server, nullptr);
        }
    }
    if (end && !halted()) {
        heard_ = frames_;
        atEnd_ = true;
        ended_();
    }
}

}  // namespace cantovel
