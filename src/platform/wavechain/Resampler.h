#pragma once
// Sample-rate conversion of interleaved floats through soxr at its high quality.

#include <QString>
#include <vector>

struct soxr;

namespace cantovel {

class Resampler {
  public:
    Resampler() = default;
    ~Resampler();
    Resampler(const Resampler&) = delete;
    Resampler& operator=(const Resampler&) = delete;

    // Prepares a conversion; false (see errorText()) when soxr refuses it.
    bool open(double inRate, double outRate, int channels);
    QString errorText() const { return error_; }

    // Converts `frames` input frames and appends what comes out to `out`. A null `in`
    // drains what the filter still holds, at the end of the input.
    bool process(const float* in, qint64 frames, std::vector<float>& out);

  private:
    soxr* soxr_ = nullptr;
    double ratio_ = 1;
    int channels_ = 0;
    QString error_;
};

}  // namespace cantovel
