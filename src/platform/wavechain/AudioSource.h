#pragma once
// A sound file opened for reading through libsndfile, in any format libsndfile reads,
// delivered as interleaved floats at full scale ±1 and mixed to the channel count the
// reader asks for.

#include <QString>
#include <memory>
#include <vector>

struct sf_private_tag;

namespace cantovel {

class AudioSource {
  public:
    AudioSource() = default;
    ~AudioSource();
    AudioSource(AudioSource&&) noexcept;
    AudioSource& operator=(AudioSource&&) noexcept;

    // Opens `path`; false (and errorText() says why) when it isn't audio libsndfile reads.
    bool open(const QString& path);
    void close();
    bool isOpen() const { return file_ != nullptr; }
    QString errorText() const { return error_; }

    int sampleRate() const { return rate_; }
    int channels() const { return channels_; }
    // Length in frames (one sample of every channel).
    qint64 frames() const { return frames_; }

    // True for a WAV whose data chunk promises more bytes than the file holds: a file cut
    // short by a failed copy or download.
    bool isTruncatedWav() const { return truncated_; }

    // Reads up to `count` frames, mixed to `outChannels`, into `out` (resized to fit).
    // Returns the frames read; 0 at the end.
    qint64 read(std::vector<float>& out, qint64 count, int outChannels);

  private:
    sf_private_tag* file_ = nullptr;
    QString error_;
    int rate_ = 0;
    int channels_ = 0;
    qint64 frames_ = 0;
    bool truncated_ = false;
    std::vector<float> raw_;
};

// Mixes `frames` interleaved frames of `inChannels` into `outChannels`: all to one by
// averaging, one to all by copying, otherwise input channel i feeds output i mod out.
void mixChannels(const float* in, int inChannels, float* out, int outChannels, qint64 frames);

}  // namespace cantovel
