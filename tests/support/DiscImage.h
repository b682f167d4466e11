#pragma once
// Builds an audio CD as a CUE/BIN disc image that libcdio opens as a drive: audio tracks of
// given lengths filled with known generated PCM, and optionally one data track first or last.

#include <QByteArray>
#include <QList>
#include <QString>
#include <cstdint>

namespace cantovel::test {

class DiscImage {
  public:
    enum class Data { None, First, Last };

    static constexpr int kSectorBytes = 2352;  // 588 stereo 16-bit samples
    static constexpr int kSectorsPerSecond = 75;

    // Writes "<folder>/<name>.cue" and "<folder>/<name>.bin". `audioSectors` lists each audio
    // track's length in sectors; a data track, if any, has `dataSectors`.
    static DiscImage build(const QString& folder, const QList<int>& audioSectors,
                           Data data = Data::None, const QString& name = QStringLiteral("disc"),
                           int dataSectors = 300);
    // The same with lengths in whole seconds.
    static DiscImage buildSeconds(const QString& folder, const QList<int>& audioSeconds,
                                  Data data = Data::None,
                                  const QString& name = QStringLiteral("disc"));

    bool ok() const { return ok_; }
    QString cuePath() const { return cue_; }
    QString binPath() const { return bin_; }
    // By track number, from 1.
    bool isAudio(int track) const { return track != dataTrack_; }
    int startSector(int track) const { return starts_.value(track - 1); }

    // The known sample at `frame` (a stereo sample pair counted from the track's start) of
    // an audio track; channel 0 is left.
    static int16_t sample(int track, int64_t frame, int channel);
    // The bytes of `count` sectors of an audio track from its sector `first`, as on the disc.
    static QByteArray pcm(int track, int first, int count);

  private:
    bool ok_ = false;
    QString cue_, bin_;
    QList<int> sectors_, starts_;
    int dataTrack_ = 0;
};

}  // namespace cantovel::test
