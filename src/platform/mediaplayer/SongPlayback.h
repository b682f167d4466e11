#pragma once
// Songs played without libmpv: decoded by libsndfile (which reads MP3 through mpg123, and
// WAV, FLAC, Ogg, Opus, AIFF, AU) on a thread of its own and written to the sound server
// through libpulse. libmpv's two hundred libraries kept 42 MB resident for the whole of a
// song that these two, already loaded for the conversions and the mixer, play alone.
//
// Output: the sound server, with half a second of sound held there, as mpv's was. With
// CANTOVEL_AO=null, a silent output that keeps real time (CANTOVEL_MPV_UNTIMED=1: as fast
// as the machine decodes), for tests. Any other CANTOVEL_AO, or no sound server, leaves
// songs to mpv. Sound always goes out as two channels (mono on both sides; of more
// channels the first two).
//
// Every call but the end's report comes from one thread (the UI's).

#include <QString>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

struct sf_private_tag;
struct pa_simple;

namespace cantovel {

class SongPlayback {
  public:
    // `ended` is called on the playing thread when a play reaches the end of the song.
    explicit SongPlayback(std::function<void()> ended) : ended_(std::move(ended)) {}
    ~SongPlayback();
    SongPlayback(const SongPlayback&) = delete;
    SongPlayback& operator=(const SongPlayback&) = delete;

    // Opens `path`, stopped at its start; false (nothing open) for a file that is no song
    // libsndfile reads, or when songs are left to mpv.
    bool open(const QString& path);
    void close();
    bool isOpen() const { return file_ != nullptr; }

    // Seconds.
    double duration() const;
    double position() const;
    // Moves to `seconds`, playing on from there when playing.
    void seek(double seconds);
    void play();
    // Stops the sound at once, keeping the position heard last; in the last half second of
    // the song it waits for the rest to be heard.
    void pause();
    // The last play reached the end (and nothing moved since).
    bool atEnd() const { return atEnd_; }
    // The gain of each side, heard with the sound held in the server (half a second).
    void setGains(float left, float right);

  private:
    enum class Output { None, Pulse, Null, NullUntimed };
    static Output chosenOutput();
    void run(qint64 from);
    // The frame heard, with `written` frames written to the server from frame `from`.
    qint64 heardFrom(pa_simple* server, qint64 from, qint64 written) const;
    // Ends the playing thread, if any; the position stays where the sound was.
    void halt();
    // Waits until `until` unless asked to halt first; true when asked to halt.
    bool waitForHalt(std::chrono::steady_clock::time_point until);

    std::function<void()> ended_;
    sf_private_tag* file_ = nullptr;
    int rate_ = 0;
    int channels_ = 0;
    qint64 frames_ = 0;
    Output output_ = Output::None;
    // The sound server's stream, made by the first play; used by the playing thread while
    // it runs, else by the caller's.
    pa_simple* server_ = nullptr;

    std::thread thread_;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool halt_ = false;             // under mutex_
    std::atomic<qint64> heard_{0};  // the frame being heard
    std::atomic<bool> atEnd_{false};
    std::atomic<float> left_{1.0f}, right_{1.0f};
};

}  // namespace cantovel
