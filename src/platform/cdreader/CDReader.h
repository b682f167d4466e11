#pragma once
// The CD reader control: plays audio tracks of a disc in the selected drive.
//
// Positions and lengths are packed as the drive reports them: minutes in the low byte,
// then seconds, then frames, 75 frames a second. Track indexes given to it are
// zero-based.

#include <QList>
#include <QObject>

namespace cantovel {

struct CDTrack {
    int Number = 0;             // one-based, as on the disc
    quint32 StartPosition = 0;  // packed
    quint32 Length = 0;         // packed
    bool IsAudio = true;
    bool CopyProtected = false;
    bool PreEmphasis = false;
};

class CDReader : public QObject {
    Q_OBJECT
  public:
    explicit CDReader(QObject* parent = nullptr) : QObject(parent) {}
    ~CDReader() override = default;

    // Opens the selected drive; whether a disc is ready shows in DiscPresent.
    virtual void Open() = 0;
    // A disc is in the drive and ready.
    virtual bool DiscPresent() const = 0;
    // The table of contents was read.
    virtual bool DirectoryRead() const = 0;
    // The disc's tracks, from index 0.
    virtual QList<CDTrack> Tracks() const = 0;

    // The current play position, packed.
    virtual quint32 Position() const = 0;
    virtual void PlayAudioTrack(int index) = 0;
    // Plays from a packed position over a packed length.
    virtual void PlayAudioRange(quint32 start, quint32 length) = 0;
    virtual void StopAudio() = 0;
    virtual void PauseAudio() = 0;

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
};

}  // namespace cantovel
