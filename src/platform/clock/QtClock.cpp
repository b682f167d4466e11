#include "platform/clock/QtClock.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTime>
#include <QTimer>

#include "platform/clock/Timer.h"

namespace cantovel {

QtClock::QtClock() {
    started_.start();
}

qint64 QtClock::msecs() const {
    return started_.elapsed();
}

double QtClock::secondsSinceMidnight() const {
    return QTime::currentTime().msecsSinceStartOfDay() / 1000.0;
}

void QtClock::doEvents() {
    EventsRunning running;
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

bool QtClock::wait(int ms, const std::function<bool()>& done) {
    EventsRunning running;
    QElapsedTimer waited;
    waited.start();
    // A short heartbeat wakes the loop so `done` is looked at even when nothing else
    // happens; between beats the thread sleeps in the event loop.
    QTimer heartbeat;
    heartbeat.start(10);
    QEventLoop loop;
    for (;;) {
        if (done && done()) return true;
        if (waited.elapsed() >= ms) return false;
        loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
}

void QtClock::timerChanged(Timer* timer) {
    QTimer* qt = timers_.value(timer);
    if (!qt) {
        qt = new QTimer(timer);
        QObject::connect(qt, &QTimer::timeout, timer, &Timer::fire);
        timers_.insert(timer, qt);
    }
    if (timer->isRunning())
        qt->start(timer->interval());
    else
        qt->stop();
}

void QtClock::timerGone(Timer* timer) {
    timers_.remove(timer);
}

}  // namespace cantovel
