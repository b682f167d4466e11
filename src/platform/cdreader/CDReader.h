#pragma once
// The CD reader control: plays audio tracks of a disc in the selected drive, and copies
// them digitally to WAV files.
//
// Positions and lengths are packed as the drive reports them: minutes in the low byte,
// then seconds, then frames, 75 frames a second, on the disc's time line (the first track
// usually starts at 2 seconds). Track indexes given to it are zero-based.
//
// Its own settings, kept under whatever key its owner names:
//  - BlockCount: the sectors asked of the drive in one read (26, about 61 KB, is what one
//    ATAPI transfer carries; fewer suits old drives, more gains nothing). Any integer is
//    kept; a copy reads 1 to 256 sectors at a time, the nearest to it.
//  - CopyMode: how carefully sectors are read. 0 "Normal" verifies every read and corrects
//    jitter and scratches (paranoia's full mode), 1 "Burst-Copy" reads straight through
//    without checks (fastest, fine for clean discs and images), 2 "Sectorsynchronization"
//    only lines up overlapping reads to undo jitter.
//  - DeviceType: the drive's maker as the user declares it, by its index in the options
//    dialog. 0 "AutoDetect" lets the reader work out from the first audio it reads which
//    byte order the drive delivers samples in; every named type is taken as a drive that
//    answers the standard command set with little-endian samples, which spares that probe
//    (a quiet disc start can fool it). Disc images always hold little-endian samples.
//  - DeviceID: the selected drive, an index into Devices().
//  - WaveFormat: the format copies are written in (the CD's own, 44,100 Hz 16-bit stereo,
//    unless chosen otherwise in the reader's wave format dialog).

#include <QList>
#include <QObject>
#include <QString>

#include "platform/registry/Registry.h"
#include "platform/wavechain/RaisedError.h"
#include "platform/wavechain/WaveFormat.h"

class QWidget;

namespace cantovel {

struct CDTrack {
    int Number = 0;             // one-based, as on the disc
    quint32 StartPosition = 0;  // packed
    quint32 Length = 0;         // packed
    bool IsAudio = true;
    bool CopyProtected = false;
    bool PreEmphasis = false;
};

struct CDDevice {
    QString DriveLetter;  // "D"
    QString DeviceName;   // what a person recognises the drive by
};

class CDReader : public QObject, public RaisedError {
    Q_OBJECT
  public:
    // What DriveState answers.
    enum DriveStates {
        dsNone = 0,      // no drive is open
        dsReady = 1,     // a disc is in, nothing plays (or play is paused)
        dsPlaying = 2,   // audio plays
        dsNoDisc = 4,    // the tray is closed and empty, or the disc can't be read
        dsDoorOpen = 5,  // the tray is open
    };

    explicit CDReader(QObject* parent = nullptr) : QObject(parent) {}
    ~CDReader() override = default;

    // ---- Settings ----
    // Reads (or writes) BlockCount, CopyMode, DeviceType, DeviceID and WaveFormat in
    // `keyPath` of `root`; a missing or unreadable value keeps what the reader has.
    void LoadRegistry(RegRoot root, const QString& keyPath);
    void SaveRegistry(RegRoot root, const QString& keyPath);
    int BlockCount() const { return blockCount_; }
    void setBlockCount(int sectors);
    int CopyMode() const { return copyMode_; }
    void setCopyMode(int mode);
    int DeviceType() const { return deviceType_; }
    void setDeviceType(int type);
    WaveFormat CopyFormat() const { return copyFormat_; }
    void setCopyFormat(const WaveFormat& format) { copyFormat_ = format; }
    // The reader's own wave format dialog: the format of the files it copies to.
    void SelectWaveFormat(QWidget* owner = nullptr);

    // ---- Drives ----
    // The machine's CD drives, looked up afresh.
    virtual QList<CDDevice> Devices() const = 0;
    int DeviceID() const { return deviceID_; }
    void setDeviceID(int id) { deviceID_ = id; }
    // Of the selected drive; empty when there is none.
    QString DriveLetter() const { return Devices().value(deviceID_).DriveLetter; }
    QString DeviceName() const { return Devices().value(deviceID_).DeviceName; }
    // Opens the selected drive; whether a disc is ready shows in DiscPresent. A drive that
    // does not exist or cannot be opened raises an error (lastError, with its text).
    virtual void Open() = 0;
    // Releases the drive, stopping play.
    virtual void Close() = 0;
    // A disc is in the drive and ready. Looks again each time, so a changed disc is seen.
    virtual bool DiscPresent() const = 0;
    // The table of contents was read.
    virtual bool DirectoryRead() const = 0;
    virtual int DriveState() const = 0;
    // True closes the tray, false opens it.
    virtual void Door(bool close) = 0;

    // ---- Disc ----
    // The disc's tracks, from index 0.
    virtual QList<CDTrack> Tracks() const = 0;
    int TrackCount() const { return int(Tracks().size()); }

    // ---- Play ----
    // The current play position, packed.
    virtual quint32 Position() const = 0;
    // One-based number of the track the position is in.
    int CurrentTrack() const;
    virtual void PlayAudioTrack(int index) = 0;
    // Plays from a packed position over a packed length.
    virtual void PlayAudioRange(quint32 start, quint32 length) = 0;
    virtual void StopAudio() = 0;
    virtual void PauseAudio() = 0;

    // ---- Copy ----
    // The file a track is copied to: the base name without its ".wav", the track's number
    // in two digits, ".wav" ("rip/track.wav", index 1 -> "rip/track02.wav").
    QString TrackFileName(QString& baseName, int index) const;
    // Starts copying a track to `fileName` and returns at once; the Copy* signals tell the
    // rest. A track that is no audio, or a copy already running, raises CopyError and
    // CopyFinished.
    virtual void CopyTrack(int index, const QString& fileName) = 0;
    // Ends a running copy; CopyFinished follows. What was written stays.
    virtual void StopCopy() = 0;
    // 1 while a copy runs, else 0.
    virtual int CopyState() const = 0;
    // The disc's frame the copy began at, and the frame it has reached.
    virtual qint64 CopyStart() const = 0;
    virtual qint64 CopyPosition() const = 0;

    // Frames in a packed position.
    static qint64 ToFrames(quint32 packed) {
        return qint64(packed & 0xFF) * 4500 + qint64((packed >> 8) & 0xFF) * 75 +
               qint64((packed >> 16) & 0xFF);
    }
    // The packed form of a frame count.
    static quint32 FromFrames(qint64 frames) {
        const quint32 m = quint32(frames / 4500), s = quint32(frames % 4500 / 75),
                      f = quint32(frames % 75);
        return m | (s << 8) | (f << 16);
    }

  signals:
    // The copy has begun reading.
    void CopyStarted();
    // The copy is over: done, stopped or failed. Always the last event of a copy.
    void CopyFinished();
    // A read failed (or the copy could not start); CopyFinished follows.
    void CopyError();
    // The file could not be created or written (a full or read-only folder). The copy
    // still counts as running while this is told; CopyFinished follows.
    void CopyWriteFailed();

  protected:
    // True when track `index` is audio and no copy runs; otherwise the copy is refused the
    // way a failed one ends: CopyError and CopyFinished, once the caller has returned.
    bool canCopy(int index, bool copying);

  private:
    int blockCount_ = 26;
    int copyMode_ = 1;
    int deviceType_ = 0;
    int deviceID_ = 0;
    WaveFormat copyFormat_;
};

}  // namespace cantovel
