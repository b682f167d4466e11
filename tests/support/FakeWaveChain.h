#pragma once
// A scripted conversion chain: no files read, runs driven by the test or by virtual time.

#include <QHash>
#include <QList>
#include <memory>

#include "platform/wavechain/WaveChain.h"
#include "support/TrackedFake.h"

namespace cantovel {
class Timer;
}

namespace cantovel::test {

class FakeWaveChain : public WaveChain, public TrackedFake<FakeWaveChain, WaveChain> {
    Q_OBJECT
  public:
    explicit FakeWaveChain(QObject* parent = nullptr);
    ~FakeWaveChain() override;

    qint64 SrcPosition() const override { return position; }
    qint64 SrcLength() const override { return length; }
    bool PrepareOutput(const QString& name) override;
    void Start() override;
    void Stop() override;
    void Close() override;
    int State() const override { return state; }

    // On Start, a run goes by itself in virtual time: the position moves in `steps`
    // steps `stepMs` apart, then the data ends. Otherwise the test drives it.
    bool autoRun = false;
    int steps = 4;
    int stepMs = 100;
    // On Start, the destination is written with the source's name in it.
    bool writesOutput = true;
    qint64 length = 1000;
    qint64 position = 0;
    int state = 0;

    // One record a Start that went through: source, destination, format.
    struct Conversion {
        QString source, destination;
        WaveFormat format;
    };
    QList<Conversion> conversions;
    QStringList prepared;
    int starts = 0, stops = 0, closes = 0;

    // Test side.
    void dataEnd();

  private:
    void halt();
    // Stop and Close alike: the run ends and the stopped event follows.
    void end();
    std::unique_ptr<Timer> timer_;
    int step_ = 0;
};

}  // namespace cantovel::test
