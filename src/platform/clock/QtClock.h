#pragma once
#include <QElapsedTimer>
#include <QHash>

#include "platform/clock/Clock.h"

class QTimer;

namespace cantovel {

// The clock of the running program: QTimer for timers, the event loop for waits.
class QtClock : public Clock {
public:
    QtClock();
    qint64 msecs() const override;
    double secondsSinceMidnight() const override;
    void doEvents() override;
    bool wait(int ms, const std::function<bool()>& done) override;
    void timerChanged(Timer* timer) override;
    void timerGone(Timer* timer) override;

private:
    QElapsedTimer started_;
    QHash<Timer*, QTimer*> timers_;
};

}  // namespace cantovel
