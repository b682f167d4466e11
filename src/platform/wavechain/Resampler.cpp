#include "platform/wavechain/Resampler.h"

#include <soxr.h>

#include <cmath>

namespace cantovel {

Resampler::~Resampler() {
    if (soxr_) soxr_delete(soxr_);
}

bool Resampler::open(double inRate, double outRate, int channels) {
    if (soxr_) soxr_delete(soxr_);
    soxr_ = nullptr;
    soxr_error_t error = nullptr;
    const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
    soxr_ = soxr_create(inRate, outRate, unsigned(channels), &error, &io, &quality, nullptr);
    if (error || !soxr_) {
        error_ = QString::fromLatin1(error ? error : "resampler unavailable");
        soxr_ = nullptr;
        return false;
    }
    ratio_ = outRate / inRate;
    channels_ = channels;
    return true;
}

bool Resampler::process(const float* in, qint64 frames, std::vector<float>& out) {
    if (!soxr_) return false;
    const bool draining = in == nullptr;
    size_t room = size_t(std::ceil(double(frames) * ratio_)) + 64;
    for (;;) {
        const size_t before = out.size();
        out.resize(before + room * size_t(channels_));
        size_t used = 0, made = 0;
        const soxr_error_t error = soxr_process(soxr_, in, draining ? 0 : size_t(frames), &used,
                                                out.data() + before, room, &made);
        out.resize(before + made * size_t(channels_));
        if (error) {
            error_ = QString::fromLatin1(error);
            return false;
        }
        if (!draining) {
            // Whatever input did not fit is offered again.
            in += used * size_t(channels_);
            frames -= qint64(used);
            if (frames <= 0) return true;
            if (used == 0 && made == 0) room *= 2;
        } else if (made < room) {
            return true;
        }
    }
}

}  // namespace cantovel
