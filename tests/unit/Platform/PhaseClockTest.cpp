// Ticks are due in phase with the start, and none that were missed are made up for.
#include "Platform/PhaseClock.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace mireth::platform {
namespace {

using namespace std::chrono_literals;

const PhaseClock::SteadyClock::time_point start(100h);

TEST(PhaseClock, TheFirstTickIsDueAnIntervalAfterTheStart) {
    PhaseClock clock(Seconds(0.5));
    clock.start(start);
    EXPECT_EQ(clock.due(), start + 500ms);
}

TEST(PhaseClock, ATickThatRanLateDoesNotDelayTheNext) {
    PhaseClock clock(Seconds(0.5));
    clock.start(start);
    clock.next(start + 999ms);
    EXPECT_EQ(clock.due(), start + 1s);
}

TEST(PhaseClock, MissedTicksAreLeftOut) {
    PhaseClock clock(Seconds(0.5));
    clock.start(start);
    clock.next(start + 2s);
    EXPECT_EQ(clock.due(), start + 2500ms);
}

TEST(PhaseClock, ATickThatRanEarlyIsNotRepeated) {
    PhaseClock clock(Seconds(0.5));
    clock.start(start);
    clock.next(start - 10s);
    EXPECT_EQ(clock.due(), start + 1s);
}

TEST(PhaseClock, AnIntervalThatIsTooShortOrNoNumberIsAMillisecond) {
    for (const double seconds : {0.0, -1.0, 0.0001, std::numeric_limits<double>::quiet_NaN()}) {
        PhaseClock clock{Seconds(seconds)};
        clock.start(start);
        EXPECT_EQ(clock.due(), start + 1ms) << seconds;
    }
}

TEST(PhaseClock, ADurationIsCutToAHundredYears) {
    EXPECT_EQ(clampedDuration(Seconds(std::numeric_limits<double>::infinity())), 24h * 365 * 100);
    EXPECT_EQ(clampedDuration(Seconds(-1)), 0s);
}

}  // namespace
}  // namespace mireth::platform
