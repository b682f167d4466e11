#pragma once
#include <atomic>

#include "platform/wavechain/BackgroundJob.h"
#include "platform/wavechain/WaveChain.h"

namespace cantovel {

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
    // Where the run writes when the destination is the source itself; empty otherwise.
    QString aside_;
};

}  // namespace cantovel
