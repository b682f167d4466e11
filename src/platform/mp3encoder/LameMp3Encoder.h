#pragma once
#include <atomic>
#include <memory>

#include "platform/mp3encoder/Mp3Encoder.h"
#include "platform/wavechain/AudioSource.h"
#include "platform/wavechain/BackgroundJob.h"

namespace cantovel {

class StagedOutput;

// The encoder on LAME, reading its source through libsndfile. Sample rates LAME can't
// take are first brought to the nearest MPEG rate with soxr.
class LameMp3Encoder : public Mp3Encoder {
    Q_OBJECT
  public:
    explicit LameMp3Encoder(QObject* parent = nullptr);
    ~LameMp3Encoder() override;

    qint16 SetFiles(const QString& input, const QString& output) override;
    void Start() override;
    void Stop() override;
    qint32 FrameTotal() const override { return frameTotal_; }
    bool WriteFailed() const override { return writeFailed_; }
    QString WriteErrorDescription() const override { return writeError_; }

    // The sample rate LAME is given for a source at `rate`: the rate itself when MPEG
    // audio has it, else the nearest MPEG rate above (48000 at most).
    static int lameInputRate(int rate);

  private:
    // Ends the run; a nonzero system error number marks a failed write.
    void finishRun(int writeError);
    void endRun();

    BackgroundJob job_{this};
    std::unique_ptr<AudioSource> source_;
    QString output_;
    qint32 frameTotal_ = 0;
    bool writeFailed_ = false;
    QString writeError_;
    std::shared_ptr<StagedOutput> staged_;
};

}  // namespace cantovel
