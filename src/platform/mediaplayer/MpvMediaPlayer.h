#pragma once
// The media player on libmpv, one mpv handle per control, made with the first file mpv
// plays. Songs are played by SongPlayback instead, where it takes them, and libmpv is then
// never loaded for them.
//
// mpv runs its own threads; its wakeup callback only queues a call to drainEvents() on
// the UI thread, which takes every pending mpv event, so state changes and signals all
// happen there. Opening waits through Clock::wait, so timers and queued events run while
// a file opens, as they did around the classic control.
//
// Output: audio goes to CANTOVEL_AO if set, else the first of pulse, alsa, null that
// works. Pictures are drawn through mpv's render API onto an OpenGL surface laid over the
// video widget (MpvVideoSurface), on desktops that have OpenGL; while that surface is not
// shown, and with no widget at all (the audio player), video goes to the null output, so
// timing and natural size still hold and nothing is drawn. CANTOVEL_VO names an output
// of mpv's own instead ("null" in tests). CANTOVEL_MPV_UNTIMED=1 plays as fast as the
// machine can, for tests.
//
// Volume: the control's hundredths of a decibel are mapped linearly onto mpv's volume
// percentage, 100 + Volume / 100, which mpv turns into gain with its cubic curve. The
// result behaves like a decibel scale over the usable range (-18 dB at -5000, -60 dB at
// -9000) and is silent at -10000, where a literal -100 dB would leave the lower half of
// the volume buttons inaudible anyway.
//
// Balance: a linear pan. Moving towards one side lowers the other channel's gain from 1
// at the centre to 0 at the end (1000 is the right channel alone). Off centre the sound is
// first made stereo (mono is copied to both sides, surround is mixed down), then panned
// by a libavfilter pan in mpv's audio filter chain; at the centre the chain is empty.

#include <QPointer>
#include <QWidget>
#include <atomic>
#include <functional>
#include <optional>
#include <vector>

#include "platform/mediaplayer/MediaPlayer.h"
#include "platform/mediaplayer/SongPlayback.h"

struct mpv_handle;
struct mpv_event;
struct mpv_stream_cb_info;

namespace cantovel {

class MpvVideoSurface;

class MpvMediaPlayer : public MediaPlayer {
    Q_OBJECT
  public:
    explicit MpvMediaPlayer(QObject* parent = nullptr);
    ~MpvMediaPlayer() override;

    // False until mpv plays a file, or when it could not be started.
    bool isValid() const { return mpv_ != nullptr; }
    // How long setting a file name may wait for the file to open (10 s unless changed).
    void setOpenTimeout(int ms) { openTimeoutMs_ = ms; }
    // mpv's own view of one of its properties, as text (empty when it has none).
    QString mpvProperty(const char* name) const;

    int setFileName(const QString& name) override;
    QString fileName() const override { return fileName_; }
    void Play() override;
    void Pause() override;
    void Stop() override;
    double CurrentPosition() const override;
    void setCurrentPosition(double seconds) override;
    double Duration() const override;
    int ImageSourceWidth() const override { return imageWidth_; }
    int ImageSourceHeight() const override { return imageHeight_; }
    void setVideoWidget(QWidget* widget) override;
    // mpv's stream callbacks for a protocol of the caller's (see mpv/stream_cb.h), kept
    // across the mpv cores this player makes.
    using StreamOpener = int (*)(void* userData, char* uri, mpv_stream_cb_info* info);
    void addStreamProtocol(const char* protocol, void* userData, StreamOpener open);

  protected:
    void applyVolume() override;
    void applyBalance() override;
    void applyDisplaySize() override;

  private:
    void applySongGains();
    enum class Outcome { None, Pending, Loaded, Failed };

    // Makes the mpv handle if there is none (or it quit); false when mpv cannot start.
    bool ensureHandle();
    void createHandle();
    void destroyHandle();
    static void wakeup(void* self);
    void drainEvents();
    void handleEvent(const mpv_event& event);
    // Handles mpv's events alone until the open has an outcome, times out or is superseded.
    void waitForOutcome(const std::function<bool()>& superseded);
    void closeFile();
    void prepareVideoOutput();
    // Switches mpv between drawing on the surface and the null output.
    void setVideoOutput(const char* vo);
    bool drawsOnSurface() const;
    void seekTo(double seconds);
    bool seekPending() const;
    // Open, and still held by mpv or the song player (a file that broke off while playing
    // in mpv is not).
    bool isOpen() const {
        return (song_.isOpen() || mpv_) && outcome_ == Outcome::Loaded && OpenState() == mpoOpen;
    }
    bool playsSong() const { return song_.isOpen(); }
    // Pauses or resumes whichever plays the file: the song player or mpv.
    void setPaused(bool paused);
    void songEnded();
    bool atEnd() const;
    bool hasAudioOrVideo() const;
    void readImageSize();
    void fitVideoWidget();

    mpv_handle* mpv_ = nullptr;
    std::atomic<bool> drainQueued_{false};
    bool shutDown_ = false;
    QString fileName_;
    QPointer<QWidget> videoWidget_;
    QPointer<MpvVideoSurface> surface_;
    QString voOverride_;
    QByteArray currentVo_;
    struct Protocol {
        QByteArray name;
        void* userData;
        StreamOpener open;
    };
    std::vector<Protocol> protocols_;
    int openTimeoutMs_ = 10000;

    // The playlist entry of the file being opened or played, as mpv numbers them.
    qint64 entryId_ = -1;
    qint64 startedId_ = -1;
    Outcome outcome_ = Outcome::None;
    QString failure_;
    // Bumped by each open, so an open superseded during its wait knows it.
    quint64 openSerial_ = 0;
    // The target of a seek mpv has not finished, which is the position meanwhile.
    std::optional<double> pendingSeek_;
    qint64 seekIssuedMs_ = 0;
    int imageWidth_ = 0;
    int imageHeight_ = 0;
    // Last, so that its thread ends before anything it reports to goes.
    SongPlayback song_{[this] {
        QMetaObject::invokeMethod(this, &MpvMediaPlayer::songEnded, Qt::QueuedConnection);
    }};
};

}  // namespace cantovel
