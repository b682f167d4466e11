#include "support/FakeCDReader.h"

#include "platform/clock/Clock.h"

namespace cantovel::test {

FakeCDReader::Disc& FakeCDReader::disc() {
    static Disc d;
    return d;
}

void FakeCDReader::setTracks(std::initializer_list<int> seconds) {
    disc().tracks.clear();
    qint64 start = 150;
    int number = 1;
    for (int s : seconds) {
        CDTrack t;
        t.Number = number++;
        t.StartPosition = CDReader::FromFrames(start);
        t.Length = CDReader::FromFrames(qint64(s) * 75);
        disc().tracks.append(t);
        start += qint64(s) * 75;
    }
}

void FakeCDReader::install() {
    disc() = Disc{};
    TrackedFake::install();
}

FakeCDReader::FakeCDReader(QObject* parent) : CDReader(parent), TrackedFake(this) {}

FakeCDReader::~FakeCDReader() = default;

void FakeCDReader::Open() {
    calls << QStringLiteral("Open");
    if (!opened_) openedAt_ = Clock::get().msecs();
    opened_ = true;
}

bool FakeCDReader::DiscPresent() const {
    return opened_ && disc().readyAfterMs &&
           Clock::get().msecs() - openedAt_ >= *disc().readyAfterMs;
}

qint64 FakeCDReader::positionFrames() const {
    if (!playing_) return fromFrames_;
    return fromFrames_ + (Clock::get().msecs() - startedAt_) * 75 / 1000;
}

quint32 FakeCDReader::Position() const {
    return CDReader::FromFrames(positionFrames());
}

void FakeCDReader::setPositionFrames(qint64 frames) {
    fromFrames_ = frames;
    startedAt_ = Clock::get().msecs();
}

void FakeCDReader::PlayAudioTrack(int index) {
    calls << QStringLiteral("PlayAudioTrack=%1").arg(index);
    if (index < 0 || index >= disc().tracks.size()) return;
    setPositionFrames(CDReader::ToFrames(disc().tracks[index].StartPosition));
    playing_ = true;
}

void FakeCDReader::PlayAudioRange(quint32 start, quint32 length) {
    calls << QStringLiteral("PlayAudioRange=%1+%2")
                 .arg(CDReader::ToFrames(start))
                 .arg(CDReader::ToFrames(length));
    setPositionFrames(CDReader::ToFrames(start));
    playing_ = true;
}

void FakeCDReader::StopAudio() {
    calls << QStringLiteral("StopAudio");
    fromFrames_ = positionFrames();
    playing_ = false;
}

void FakeCDReader::PauseAudio() {
    calls << QStringLiteral("PauseAudio");
    fromFrames_ = positionFrames();
    playing_ = false;
}

}  // namespace cantovel::test
