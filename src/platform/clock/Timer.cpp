#include "platform/clock/Timer.h"

#include "platform/Components.h"
#include "platform/clock/Clock.h"

namespace cantovel {

Clock& Clock::get() {
    return Components::service<Clock>();
}

Timer::Timer(int interval, QObject* parent) : QObject(parent), interval_(interval) {}

Timer::~Timer() {
    if (Components::hasService<Clock>()) Clock::get().timerGone(this);
}

void Timer::setInterval(int ms) {
    interval_ = ms;
    Clock::get().timerChanged(this);
}

// Enabling a timer that runs already leaves its count alone: only a change restarts it
// (off and on again is how a window restarts a timer).
void Timer::setEnabled(bool enabled) {
    if (enabled == enabled_) return;
    enabled_ = enabled;
    Clock::get().timerChanged(this);
}

}  // namespace cantovel
