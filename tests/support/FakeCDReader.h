#pragma once
// A CD reader with a scripted disc that plays and copies by the clock's time (virtual time
// under FakeClock). What the drives and the disc are like is scripted for all fakes at
// once, since windows make their readers through the component factory. Every call is
// recorded.

#include <QList>
#include <QStringList>
#include <initializer_list>
#include <memory>
#include <optional>

#include "platform/cdreader/CDReader.h"
#include "support/TrackedFake.h"

namespace cantovel {
class Timer;
}

namespace cantovel::test {

class FakeCDReader : public CDReader, public TrackedFake<FakeCDReader, CDReader> {
    Q_OBJECT
  public:
    struct Disc {
        // Milliseconds after Open until the disc reads as present; none: never.
        std::optional<int> readyAfterMs = 0;
        bool directoryRead = true;
        QList<CDTrack> tracks;
        // The machine's drives; one unless a test says otherwise.
        QList<CDDevice> devices{{QStringLiteral("D"), QStringLiteral("Fake CD-ROM")}};
        // The disc was taken out (DiscPresent false whatever else holds).
        bool removed = false;
        // Open raises an error with this text.
        QString openError;
        bool doorOpen = false;
        // Copies: the pace, in frames per 100 ms of clock time, after a start-up of
        // copyStartMs; a read error once that many frames are done.
        qint64 copyFramesPer100Ms = 750;
        int copyStartMs = 50;
        std::optional<qint64> failReadAt;
    };
    static Disc& disc();
    // Tracks of these lengths in seconds, the first starting at 2 seconds, the usual gap.
    static void setTracks(std::initializer_list<int> seconds);
    // Makes the component factory hand out fakes, and forgets the scripted disc.
    static void install();
    explicit FakeCDReader(QObject* parent = nullptr);
    ~FakeCDReader() override;

    void Open() override;
    bool DiscPresent() const override;
    bool DirectoryRead() const override { return DiscPresent() && disc().directoryRead; }
    QList<CDTrack> Tracks() const override {
        return disc().removed || disc().doorOpen ? QList<CDTrack>() : disc().tracks;
    }
    QList<CDDevice> Devices() const override { return disc().devices; }
    void Close() override;
    int DriveState() const override;
    void Door(bool close) override;
    void CopyTrack(int index, const QString& fileName) override;
    void StopCopy() override;
    int CopyState() const override { return copying_ ? 1 : 0; }
    qint64 CopyStart() const override { return copyStart_; }
    qint64 CopyPosition() const override { return copyPosition_; }
    quint32 Position() const override;
    void PlayAudioTrack(int index) override;
    void PlayAudioRange(quint32 start, quint32 length) override;
    void StopAudio() override;
    void PauseAudio() override;

    // Moves the play position to `frames` from the start of the disc.
    void setPositionFrames(qint64 frames);

    // "Open", "Close", "PlayAudioTrack=<i>", "PlayAudioRange=<start frames>+<length frames>",
    // "StopAudio", "PauseAudio", "Door=<0|1>", "CopyTrack=<i>:<file>", "StopCopy".
    QStringList calls;
    // The DeviceID each Open was made with.
    QList<int> openedDevices;

  private:
    qint64 positionFrames() const;
    void copyTick();
    void finishCopy();

    bool opened_ = false;
    qint64 openedAt_ = 0;
    bool playing_ = false;
    qint64 fromFrames_ = 0;
    qint64 startedAt_ = 0;

    bool copying_ = false;
    bool copyStarted_ = false;
    qint64 copyStart_ = 0;
    qint64 copyPosition_ = 0;
    qint64 copyEnd_ = 0;
    qint64 copyBegunAt_ = 0;
    std::unique_ptr<Timer> copyTimer_;
};

}  // namespace cantovel::test
