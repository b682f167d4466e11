#pragma once
// A CD reader with a scripted disc that plays by the clock's time (virtual time under
// FakeClock). What the disc is like is scripted for all fakes at once, since windows
// make their readers through the component factory. Every call is recorded.

#include <QList>
#include <QStringList>
#include <initializer_list>
#include <optional>

#include "platform/cdreader/CDReader.h"
#include "support/TrackedFake.h"

namespace cantovel::test {

class FakeCDReader : public CDReader, public TrackedFake<FakeCDReader, CDReader> {
    Q_OBJECT
  public:
    struct Disc {
        // Milliseconds after Open until the disc reads as present; none: never.
        std::optional<int> readyAfterMs = 0;
        bool directoryRead = true;
        QList<CDTrack> tracks;
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
    QList<CDTrack> Tracks() const override { return disc().tracks; }
    quint32 Position() const override;
    void PlayAudioTrack(int index) override;
    void PlayAudioRange(quint32 start, quint32 length) override;
    void StopAudio() override;
    void PauseAudio() override;

    // Moves the play position to `frames` from the start of the disc.
    void setPositionFrames(qint64 frames);

    // "Open", "PlayAudioTrack=<i>", "PlayAudioRange=<start frames>+<length frames>",
    // "StopAudio", "PauseAudio".
    QStringList calls;

  private:
    qint64 positionFrames() const;

    bool opened_ = false;
    qint64 openedAt_ = 0;
    bool playing_ = false;
    qint64 fromFrames_ = 0;
    qint64 startedAt_ = 0;
};

}  // namespace cantovel::test
