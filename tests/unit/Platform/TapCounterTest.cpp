// Which touches make a run of taps.
#include "MirethVex/Platform/TapCounter.hpp"

#include <gtest/gtest.h>

namespace mireth::platform {
namespace {

struct TapCount : testing::Test {
    TapCounter counter{0.35, 40};

    /// A tap of 80 ms; answers its count.
    int tap(Point point, double begins) {
        const int count = counter.countOf(point, begins);
        end(point, begins + 0.08, count);
        return count;
    }
    void end(Point point, double timestamp, int count) {
        Touch touch;
        touch.phase = TouchPhase::ended;
        touch.locationInWindow = point;
        touch.timestamp = timestamp;
        touch.tapCount = count;
        counter.touchEnded(touch);
    }
};

TEST_F(TapCount, TheFirstTapIsOne) {
    EXPECT_EQ(tap({10, 10}, 0), 1);
}

TEST_F(TapCount, EachQuickTapInPlaceCountsOneMore) {
    for (int expected = 1; expected <= 6; ++expected) {
        EXPECT_EQ(tap({10, 10}, 1000 + 0.15 * expected), expected);
    }
}

TEST_F(TapCount, ATapAtTheIntervalBeginsANewRun) {
    EXPECT_EQ(tap({10, 10}, 1000), 1);
    EXPECT_EQ(tap({10, 10}, 1000.43), 1);
    EXPECT_EQ(tap({10, 10}, 1000.859), 2);
}

TEST_F(TapCount, ATapBeyondTheDistanceBeginsANewRun) {
    EXPECT_EQ(tap({10, 10}, 0), 1);
    EXPECT_EQ(tap({50, 10}, 0.2), 2);
    EXPECT_EQ(tap({50, 50.1}, 0.4), 1);
}

TEST_F(TapCount, TheDistanceIsMeasuredFromTheLastTapNotTheFirst) {
    EXPECT_EQ(tap({0, 0}, 0), 1);
    EXPECT_EQ(tap({30, 0}, 0.2), 2);
    EXPECT_EQ(tap({60, 0}, 0.4), 3);
}

TEST_F(TapCount, ATouchThatBeginsWhileAnotherIsDownGoesByTheOneThatEndedLast) {
    EXPECT_EQ(tap({10, 10}, 0), 1);
    const int second = counter.countOf({10, 10}, 0.1);
    const int third = counter.countOf({12, 10}, 0.12);
    EXPECT_EQ(second, 2);
    EXPECT_EQ(third, 2);
    end({12, 10}, 0.2, third);
    EXPECT_EQ(counter.countOf({10, 10}, 0.25), 3);
}

TEST_F(TapCount, AnAskedForCountChangesNothing) {
    EXPECT_EQ(tap({10, 10}, 0), 1);
    EXPECT_EQ(counter.countOf({10, 10}, 0.2), 2);
    // That one was cancelled: nobody told the counter of its end.
    EXPECT_EQ(tap({10, 10}, 0.3), 2);
}

}  // namespace
}  // namespace mireth::platform
