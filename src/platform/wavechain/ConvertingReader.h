#pragma once
// Reads a sound source block by block as interleaved floats, mixed to the channels and
// brought to the rate its consumer wants.

#include <vector>

#include "platform/wavechain/AudioSource.h"
#include "platform/wavechain/Resampler.h"

namespace cantovel {

class ConvertingReader {
  public:
    ConvertingReader(AudioSource& source, int channels, int rate);

    // False when the rate change can't be set up.
    bool isValid() const { return valid_; }

    // Moves to the next block; false once the source and the resampler's tail are used up.
    bool next();
    const float* data() const { return data_; }
    qint64 frames() const { return frames_; }
    // Frames of the source read so far.
    qint64 sourcePosition() const { return position_; }

  private:
    static constexpr qint64 kBlockFrames = 8192;

    AudioSource& source_;
    int channels_;
    bool resampling_;
    bool valid_ = true;
    bool finished_ = false;
    Resampler resampler_;
    std::vector<float> pcm_, resampled_;
    const float* data_ = nullptr;
    qint64 frames_ = 0;
    qint64 position_ = 0;
};

}  // namespace cantovel
