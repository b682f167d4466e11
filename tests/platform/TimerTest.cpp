// Window timers on the clock: what restarts a timer's count and what leaves it alone.
#include <gtest/gtest.h>

#include "platform/clock/Timer.h"
#include "support/AppTest.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class TimerTest : public AppTest {};

TEST_F(TimerTest, EnablingARunningTimerKeepsItsCountAndOffAndOnRestartsIt) {
    Timer timer(100);
    int ticks = 0;
    QObject::connect(&timer, &Timer::timeout, [&] { ++ticks; });
    timer.setEnabled(true);
    clock().advance(60);
    // A window that enables its timer on every tick of another must not hold it back.
    timer.setEnabled(true);
    clock().advance(40);
    EXPECT_EQ(ticks, 1);

    clock().advance(60);
    timer.setEnabled(false);
    timer.setEnabled(true);
    clock().advance(40);
    EXPECT_EQ(ticks, 1);
    clock().advance(60);
    EXPECT_EQ(ticks, 2);
}

}  // namespace
