#include "platform/wavechain/ConvertingReader.h"

namespace cantovel {

ConvertingReader::ConvertingReader(AudioSource& source, int channels, int rate)
    : source_(source), channels_(channels), resampling_(source.sampleRate() != rate) {
    if (resampling_) valid_ = resampler_.open(source.sampleRate(), rate, channels);
}

bool ConvertingReader::next() {
    while (valid_ && !finished_) {
        const qint64 got = source_.read(pcm_, kBlockFrames, channels_);
        position_ += got;
        if (!resampling_) {
            finished_ = got == 0;
            data_ = pcm_.data();
            frames_ = got;
            return !finished_;
        }
        resampled_.clear();
        // At the end of the source the resampler gives what it still holds.
        finished_ = got == 0;
        resampler_.process(finished_ ? nullptr : pcm_.data(), got, resampled_);
        data_ = resampled_.data();
        frames_ = qint64(resampled_.size()) / channels_;
        // The filter may keep a whole first block back; then read on.
        if (frames_ > 0) return true;
    }
    return false;
}

}  // namespace cantovel
