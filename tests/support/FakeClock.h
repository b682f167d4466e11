#pragma once
// Virtual time: timers fire and waits end as time is advanced, never by the wall clock.

#include <QHash>
#include <QList>

#include "platform/clock/Clock.h"

namespace cantovel::test {

class FakeClock : public Clock {
  public:
    qint64 msecs() const override { return now_; }
    double secondsSinceMidnight() const override { return midnightOffset_ + now_ / 1000.0; }
    void doEvents() override;
    // Moves virtual time on in steps from one timer tick to the next until `ms` have
    // passed or `done` answers true.
    bool wait(int ms, const std::function<bool()>& done) override;
    void timerChanged(Timer* timer) override;
    void timerGone(Timer* timer) override;

    // Moves time on by `ms`, firing every timer that falls due, in order.
    void advance(qint64 ms) { wait(int(ms), {}); }
    // How many wait() calls ran, and the total virtual time they asked for.
    int waits = 0;

  private:
    qint64 now_ = 0;
    double midnightOffset_ = 12 * 3600.0;
    // Due time and the order timers were armed in, so ties fire in a fixed order.
    QHash<Timer*, std::pair<qint64, quint64>> due_;
    quint64 armed_ = 0;
};

}  // namespace cantovel::test
