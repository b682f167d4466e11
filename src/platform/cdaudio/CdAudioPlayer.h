#pragma once
// Plays a stretch of an audio CD, a drive's or a disc image's, through the desktop's sound
// output, and tells where it is.
//
// The sectors are read with libcdio on mpv's own reading thread and handed to mpv as raw
// CD audio (16-bit little-endian stereo at 44,100 Hz) through a stream callback, so the
// sound goes out the way every other player of the program's goes: same output choice,
// same volume control. Each play opens the disc afresh on that thread; nothing is shared
// with whoever else has the disc open, so extraction may run at the same time.
//
// Sectors are libcdio's logical sector numbers (LSN): 0 is the first sector of the first
// track in the usual layout, two seconds (150 sectors) after the start of the disc's time
// line that drives report positions on.
//
// Output: CANTOVEL_AO if set, else the first of pulse, alsa, null that works.
// CANTOVEL_MPV_UNTIMED=1 plays as fast as the machine can, for tests.

#include <QObject>
#include <QString>
#include <atomic>

struct mpv_handle;
struct mpv_stream_cb_info;

namespace cantovel {

class CdAudioPlayer : public QObject {
    Q_OBJECT
  public:
    enum State { Stopped, Playing, Paused };

    explicit CdAudioPlayer(QObject* parent = nullptr);
    ~CdAudioPlayer() override;

    // False when mpv could not be started; nothing then plays.
    bool isValid() const { return mpv_ != nullptr; }

    // Plays `count` sectors from `first` of the disc in `device` (a device node or an image
    // libcdio opens). Returns at once; false when mpv refused to start it. A disc that
    // cannot be read ends the play, with finished() not raised and errorText() set. A
    // play of no sectors is over at once, with finished() raised.
    bool play(const QString& device, qint64 first, qint64 count);
    void pause();
    void resume();
    // Stops; the position stays where the sound was.
    void stop();

    State state() const { return state_; }
    // The sector the sound has reached: the first sector while starting, the last one
    // heard after a stop or the end.
    qint64 position() const;
    // The stretch asked for by the last play.
    qint64 first() const { return first_; }
    qint64 count() const { return count_; }

    // 0..100, applied to this player alone.
    void setVolume(int percent);
    int volume() const { return volume_; }

    // Why the last play ended early, or empty.
    QString errorText() const { return error_; }

  signals:
    // The whole stretch has been played.
    void finished();
    void stateChanged(int state);

  private:
    static int openStream(void* self, char* uri, mpv_stream_cb_info* info);
    static void wakeup(void* self);
    void drainEvents();
    void setState(State state);
    qint64 timePosition() const;

    mpv_handle* mpv_ = nullptr;
    std::atomic<bool> drainQueued_{false};
    State state_ = Stopped;
    QString device_;
    qint64 first_ = 0;
    qint64 count_ = 0;
    // Where the sound stood when it last stopped, as a sector.
    qint64 stoppedAt_ = 0;
    int volume_ = 100;
    QString error_;
    // Bumped by each play; mpv's entry id of the current one.
    quint64 serial_ = 0;
    qint64 entryId_ = -1;
};

}  // namespace cantovel
