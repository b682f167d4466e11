#pragma once
// Time for the whole program: timers, letting events run, and the bounded waits the
// windows rely on. Production runs on Qt's timers; tests run on virtual time, so a
// 15-second wait costs nothing.

#include <QtGlobal>
#include <functional>

class QObject;

namespace cantovel {

class Timer;

class Clock {
  public:
    virtual ~Clock() = default;

    // Milliseconds from an arbitrary start, never going back.
    virtual qint64 msecs() const = 0;
    // Seconds since local midnight, with fractions.
    virtual double secondsSinceMidnight() const = 0;
    // Lets pending events run once.
    virtual void doEvents() = 0;
    // Waits up to `ms` milliseconds while events run, without spinning a core. Ends early
    // once `done` answers true; returns whether it did.
    virtual bool wait(int ms, const std::function<bool()>& done = {}) = 0;

    // Called by Timer whenever its interval or enabled state changes, and when it goes.
    virtual void timerChanged(Timer* timer) = 0;
    virtual void timerGone(Timer* timer) = 0;

    static Clock& get();
};

// Marks a call in which events run: a wait, DoEvents, a modal dialog. A window that closes
// meanwhile is destroyed only once no such call is left on the stack, so every procedure
// that waits still has its own window to look at when its wait returns.
class EventsRunning {
  public:
    EventsRunning();
    ~EventsRunning();
    EventsRunning(const EventsRunning&) = delete;
    EventsRunning& operator=(const EventsRunning&) = delete;

    static int depth();
    // Deletes `object` later: at once when no call runs events, else after the last returns.
    static void deleteWhenIdle(QObject* object);
};

}  // namespace cantovel
