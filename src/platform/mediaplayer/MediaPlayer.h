#pragma once
// The media player control the windows drive (MP, AM, ActiveMovie1): one file at a time,
// with the classic control's states, units and events.
//
//  - Setting the file name opens the file before it returns (a bounded wait in which no
//    other event runs) and leaves it stopped at the start; it never starts playing by itself.
//    A file the player refuses gives ErrorFail, from the setter and from lastError().
//    The empty name closes the file.
//  - Opening reports OpenStateChange(0, 5) and then (5, 6) once the file is open, by which
//    time PlayState is already 0: the play state moves from closed to stopped with no
//    PlayStateChange of its own. A failed open reports (5, 0) with PlayState still 6.
//  - Play, Pause and Stop report PlayStateChange(old, new). Stop pauses and returns to the
//    start, the file stays open. The end of the file reports (2, 0) and keeps the file open:
//    position and duration stay readable, and Play starts again from the beginning.
//  - Closing or replacing an open file reports PlayStateChange(old, 6) and then
//    OpenStateChange(6, 0).
//
// Every event is delivered on the UI thread.

#include <QObject>
#include <QString>

class QWidget;

namespace cantovel {

class MediaPlayer : public QObject {
    Q_OBJECT
  public:
    // PlayState values.
    enum PlayStates {
        mpStopped = 0,
        mpPaused = 1,
        mpPlaying = 2,
        mpWaiting = 3,
        mpScanForward = 4,
        mpScanReverse = 5,
        mpClosed = 6
    };
    // OpenState values.
    enum OpenStates {
        mpoClosed = 0,
        mpoLoadingASX = 1,
        mpoLoadingNSC = 2,
        mpoLocating = 3,
        mpoConnecting = 4,
        mpoOpening = 5,
        mpoOpen = 6
    };
    // DisplaySize values. Default, half and double size the video widget to the picture's
    // natural size times 1, 1/2 or 2; the others leave the widget's size to its window, and
    // the picture fits inside it with its aspect kept.
    enum DisplaySizes {
        mpDefaultSize = 0,
        mpHalfSize = 1,
        mpDoubleSize = 2,
        mpFullScreen = 3,
        mpFitToSize = 4,
        mpOneSixteenthScreen = 5,
        mpOneFourthScreen = 6,
        mpOneHalfScreen = 7
    };
    // The error number of a refused file ("Unspecified error"), as a 32-bit signed value.
    static constexpr int ErrorFail = int(0x80004005u);

    static constexpr int MinVolume = -10000, MaxVolume = 0;
    static constexpr int MinBalance = -1000, MaxBalance = 1000;

    explicit MediaPlayer(QObject* parent = nullptr) : QObject(parent) {}
    ~MediaPlayer() override = default;

    // Opens `name` (or closes the file for the empty name); 0 or ErrorFail.
    virtual int setFileName(const QString& name) = 0;
    virtual QString fileName() const = 0;

    // The error of the last call that failed (0 after a successful open), and its text.
    int lastError() const { return lastError_; }
    QString lastErrorDescription() const { return lastErrorText_; }

    virtual void Play() = 0;
    virtual void Pause() = 0;
    virtual void Stop() = 0;

    int PlayState() const { return playState_; }
    int OpenState() const { return openState_; }

    // Seconds, from the start of the file. Writing clamps to 0..Duration.
    virtual double CurrentPosition() const = 0;
    virtual void setCurrentPosition(double seconds) = 0;
    // The play selection: the whole file.
    double SelectionStart() const { return 0.0; }
    double SelectionEnd() const { return Duration(); }
    // Seconds; 0 with no file open.
    virtual double Duration() const = 0;

    // Hundredths of a decibel below full: -10000 (silent) to 0 (full).
    int Volume() const { return volume_; }
    void setVolume(int volume);
    // -1000 (left only) to 1000 (right only).
    int Balance() const { return balance_; }
    void setBalance(int balance);
    int DisplaySize() const { return displaySize_; }
    void setDisplaySize(int size);

    // The picture's natural size in pixels; 0 for sound only or before the first picture.
    virtual int ImageSourceWidth() const = 0;
    virtual int ImageSourceHeight() const = 0;

    // The widget the picture is shown in (taken at the next open), or none.
    virtual void setVideoWidget(QWidget* widget) = 0;

  signals:
    void OpenStateChange(int oldState, int newState);
    void PlayStateChange(int oldState, int newState);

  protected:
    // Moves to a state, reporting the change when there is one.
    void changePlayState(int state);
    void changeOpenState(int state);
    void setLastError(int error, const QString& text = {});

    // The steps of closing and opening a file with their events, the same for every
    // backend. A handler may delete the player inside any of them; callers hold a QPointer.
    // Closed: PlayStateChange(old, 6), then OpenStateChange(6, 0).
    void reportClosed();
    // OpenStateChange(0, 5).
    void reportOpening() { changeOpenState(mpoOpening); }
    // Stopped without an event, then OpenStateChange(5, 6).
    void reportOpened();
    // The error, then OpenStateChange(5, 0); returns ErrorFail.
    int reportRefused(const QString& reason);

    // Hooks for the backend when a stored setting has changed.
    virtual void applyVolume() {}
    virtual void applyBalance() {}
    virtual void applyDisplaySize() {}

  private:
    int playState_ = mpClosed;
    int openState_ = mpoClosed;
    int volume_ = MaxVolume;
    int balance_ = 0;
    int displaySize_ = mpDefaultSize;
    int lastError_ = 0;
    QString lastErrorText_;
};

}  // namespace cantovel
