#pragma once
#include <atomic>
#include <memory>

#include "platform/wavechain/BackgroundJob.h"
#include "platform/wavechain/WaveChain.h"

namespace cantovel {

class StagedOutput;

// The chain on libsndfile (reading and writing) and soxr (rate).
class SndfileWaveChain : public WaveChain {
    Q_OBJECT
  public:
    explicit SndfileWaveChain(QObject* parent = nullptr);
    ~SndfileWaveChain() override;

    qint64 SrcPosition() const override { return position_.load(); }
    qint64 SrcLength() const override { return length_; }
    bool PrepareOutput(const QString& name) override;
    void Start() override;
    void Stop() override;
    void Close() override { Stop(); }
    int State() const override { return state_; }

  private:
    void failWrite();

    BackgroundJob job_{this};
    std::atomic<qint64> position_{0};
    qint64 length_ = 0;
    int state_ = 0;
    // The run's output, written aside; kept on a stop unless it replaces its own source.
    std::shared_ptr<StagedOutput> staged_;
    bool keepStopped_ = true;
};

}  // namespace cantovel
