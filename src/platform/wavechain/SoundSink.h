#pragma once
// A sound file being written through libsndfile, closed on purpose when the last header
// write matters, or when it goes.

#include <QString>

struct sf_private_tag;

namespace cantovel {

// True for the errors of a write that found no room: a full disk, a file-size limit, a
// spent quota.
bool isDiskFullError(int error);

class SoundSink {
  public:
    SoundSink() = default;
    ~SoundSink();
    SoundSink(const SoundSink&) = delete;
    SoundSink& operator=(const SoundSink&) = delete;

    // Creates (or empties) `path` for a libsndfile `format`. On failure: false, and the
    // system's error number and libsndfile's text say why.
    bool open(const QString& path, int format, int rate, int channels);
    int openErrno() const { return openErrno_; }
    QString errorText() const { return errorText_; }

    // Each true when every frame was written; else writeErrno() says why.
    bool write(const float* interleaved, qint64 frames);
    bool write(const short* interleaved, qint64 frames);
    // Writes the final lengths into the header and closes; false when that failed.
    bool close();
    // The system's error number of the last failed write or close (EIO when none was left).
    int writeErrno() const { return writeErrno_; }

  private:
    bool failed();

    sf_private_tag* file_ = nullptr;
    int openErrno_ = 0;
    int writeErrno_ = 0;
    QString errorText_;
};

}  // namespace cantovel
