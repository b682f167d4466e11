#include "support/FakeWaveChain.h"

#include <QFile>
#include <QFileInfo>

#include "platform/clock/Timer.h"

namespace cantovel::test {

FakeWaveChain::FakeWaveChain(QObject* parent) : WaveChain(parent), TrackedFake(this) {}

FakeWaveChain::~FakeWaveChain() = default;

bool FakeWaveChain::PrepareOutput(const QString& name) {
    prepared << name;
    return true;
}

void FakeWaveChain::Start() {
    clearError();
    ++starts;
    if (state & StateRunning) return;
    const QString source = SrcFileName();
    conversions.append({source, DstFileName(), TargetFormat()});
    if (writesOutput) {
        QFile out(DstFileName());
        if (out.open(QIODevice::WriteOnly)) out.write(source.toUtf8());
    }
    position = 0;
    state = StateRunning;
    QMetaObject::invokeMethod(this, &WaveChain::TriggerStarted, Qt::QueuedConnection);
    if (autoRun) {
        step_ = 0;
        timer_ = std::make_unique<Timer>(stepMs);
        connect(timer_.get(), &Timer::timeout, this, [this] {
            position = length * ++step_ / steps;
            if (step_ >= steps) {
                halt();
                emit TriggerDataEnd();
            }
        });
        timer_->setEnabled(true);
    }
}

void FakeWaveChain::halt() {
    if (timer_) {
        timer_->setEnabled(false);
        timer_.release()->deleteLater();
    }
}

void FakeWaveChain::Stop() {
    ++stops;
    end();
}

void FakeWaveChain::Close() {
    ++closes;
    end();
}

void FakeWaveChain::end() {
    halt();
    if (!(state & StateRunning)) return;
    state &= ~StateRunning;
    QMetaObject::invokeMethod(this, &WaveChain::TriggerStopped, Qt::QueuedConnection);
}

void FakeWaveChain::dataEnd() {
    if (!(state & StateRunning)) return;
    halt();
    position = length;
    emit TriggerDataEnd();
}

}  // namespace cantovel::test
