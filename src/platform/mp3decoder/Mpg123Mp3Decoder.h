#pragma once
#include <memory>

#include "platform/mp3decoder/Mp3Decoder.h"
#include "platform/wavechain/BackgroundJob.h"

struct mpg123_handle_struct;

namespace cantovel {

class StagedOutput;

// The decoder on mpg123, writing the WAV through libsndfile.
class Mpg123Mp3Decoder : public Mp3Decoder {
    Q_OBJECT
  public:
    explicit Mpg123Mp3Decoder(QObject* parent = nullptr);
    ~Mpg123Mp3Decoder() override;

    qint16 SetFiles(const QString& input, const QString& output) override;
    void StartDecode() override;
    void StopDecode() override;
    qint32 FrameTotal() const override { return frameTotal_; }
    bool WriteFailed() const override { return writeFailed_; }
    QString WriteErrorDescription() const override { return writeError_; }

  private:
    // Ends the run; a nonzero system error number marks a failed write.
    void finishRun(int writeError);
    void endRun();

    BackgroundJob job_{this};
    std::shared_ptr<mpg123_handle_struct> stream_;
    QString output_;
    long rate_ = 0;
    int channels_ = 0;
    qint32 frameTotal_ = 0;
    bool writeFailed_ = false;
    QString writeError_;
    std::shared_ptr<StagedOutput> staged_;
};

}  // namespace cantovel
