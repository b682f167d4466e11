#pragma once
// The CD audio device as the classic multimedia control drives it: a command word is
// written to perform it, properties are read, and a periodic status update is raised.
//
// Positions and lengths are packed minutes/seconds/frames: minutes in the low byte, then
// seconds, then frames (75 a second). Positions count from the start of the disc's
// lead-in, so track 1 of a normal disc starts near 00:02:00. As the classic device did, the
// last track is reported one frame short of the lead-out.

#include <QObject>
#include <QString>

namespace cantovel {

class MciDevice : public QObject {
    Q_OBJECT
  public:
    enum Modes {
        mciModeNotOpen = 524,
        mciModeStop = 525,
        mciModePlay = 526,
        mciModeRecord = 527,
        mciModeSeek = 528,
        mciModePause = 529,
        mciModeReady = 530  // for a CD: the tray is out
    };

    // Settings taken by "Open"; only "CDAudio" is a device here.
    virtual void setDeviceType(const QString& type) = 0;
    virtual QString deviceType() const = 0;
    virtual void setNotify(bool on) = 0;
    virtual void setWait(bool on) = 0;
    virtual void setShareable(bool on) = 0;

    // Performs "Open", "Close", "Play", "Pause", "Stop", "Prev", "Next", "Eject" (any case).
    // A From or To set before a Play applies to that play only.
    virtual void setCommand(const QString& word) = 0;
    virtual QString command() const = 0;

    virtual int Mode() = 0;
    // 0 when not open or without a disc.
    virtual int Tracks() = 0;
    virtual void setTrack(int track) = 0;
    virtual int Track() const = 0;
    // Of the track set in Track.
    virtual qint32 TrackPosition() = 0;
    virtual qint32 TrackLength() = 0;
    virtual qint32 Position() = 0;
    virtual void setFrom(qint32 msf) = 0;
    virtual void setTo(qint32 msf) = 0;

  signals:
    // Raised periodically while the device exists.
    void StatusUpdate();
};

// Packed minutes/seconds/frames and frame counts.
inline qint64 MsfToFrames(qint32 msf) {
    return (msf & 0xFF) * 4500LL + ((msf >> 8) & 0xFF) * 75LL + ((msf >> 16) & 0xFF);
}
inline qint32 FramesToMsf(qint64 frames) {
    const qint64 m = frames / 4500, s = frames % 4500 / 75, f = frames % 75;
    return qint32(m + s * 256 + f * 65536);
}

}  // namespace cantovel
