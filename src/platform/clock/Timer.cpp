#include "platform/clock/Timer.h"

#include <QList>
#include <QPointer>
#include <utility>

#include "platform/Components.h"
#include "platform/clock/Clock.h"

namespace cantovel {

Clock& Clock::get() {
    return Components::service<Clock>();
}

namespace {
int eventsDepth = 0;
QList<QPointer<QObject>>& heldBack() {
    static QList<QPointer<QObject>> objects;
    return objects;
}
}  // namespace

EventsRunning::EventsRunning() {
    ++eventsDepth;
}

EventsRunning::~EventsRunning() {
    if (--eventsDepth > 0) return;
    const QList<QPointer<QObject>> due = std::exchange(heldBack(), {});
    for (const QPointer<QObject>& object : due)
        if (object) object->deleteLater();
}

int EventsRunning::depth() {
    return eventsDepth;
}

void EventsRunning::deleteWhenIdle(QObject* object) {
    if (eventsDepth > 0)
        heldBack().append(object);
    else
        object->deleteLater();
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
