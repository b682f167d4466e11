#include "support/FakeClock.h"

#include <QCoreApplication>
#include <QPointer>

#include "platform/clock/Timer.h"

namespace cantovel::test {

void FakeClock::doEvents() {
    EventsRunning running;
    QCoreApplication::processEvents();
}

bool FakeClock::wait(int ms, const std::function<bool()>& done) {
    ++waits;
    EventsRunning running;
    const qint64 end = now_ + ms;
    for (;;) {
        QCoreApplication::processEvents();
        if (done && done()) return true;
        if (now_ >= end) return false;
        // The next timer due within the wait, else the end of the wait.
        Timer* next = nullptr;
        std::pair<qint64, quint64> best{end, 0};
        for (auto it = due_.cbegin(); it != due_.cend(); ++it)
            if (it.value().first <= end && (!next || it.value() < best)) {
                next = it.key();
                best = it.value();
            }
        const qint64 nextDue = best.first;
        // Waits that watch a flag advance in small steps so the flag is seen on time.
        if (done && nextDue - now_ > 10) {
            now_ += 10;
            continue;
        }
        now_ = std::max(now_, nextDue);
        if (next) {
            QPointer<Timer> guard(next);
            due_[next] = {now_ + next->interval(), armed_++};
            next->fire();
            if (!guard) due_.remove(next);
        }
    }
}

void FakeClock::timerChanged(Timer* timer) {
    if (timer->isRunning())
        due_[timer] = {now_ + timer->interval(), armed_++};
    else
        due_.remove(timer);
}

void FakeClock::timerGone(Timer* timer) {
    due_.remove(timer);
}

}  // namespace cantovel::test
