#include "PrivateSide/Detection/Signals/ViewComparison/TimeoutEvaluator.hpp"

#include <gtest/gtest.h>

namespace mireth {
namespace {

platform::Seconds timeoutWith(std::uint64_t mebibytes) {
    return TimeoutEvaluator(DevicePerformanceEvaluator(mebibytes << 20U)).determineTimeoutPeriod();
}

TEST(TimeoutEvaluator, SlowDevicesHaveTwoSecondsAverageOnesOneAndAHalfFastOnesOne) {
    EXPECT_EQ(timeoutWith(2999), platform::Seconds(2.0));
    EXPECT_EQ(timeoutWith(3000), platform::Seconds(1.5));
    EXPECT_EQ(timeoutWith(5999), platform::Seconds(1.5));
    EXPECT_EQ(timeoutWith(6000), platform::Seconds(1.0));
}

}  // namespace
}  // namespace mireth
