// Operations in flight and the order in which their results are taken up.
#include "MirethVex/Headless/InFlight.hpp"

#include <gtest/gtest.h>

#include <utility>

namespace mireth::headless {
namespace {

class InFlightTest : public ::testing::Test {
  protected:
    std::shared_ptr<WakeUp> wakeUp = std::make_shared<WakeUp>();
    InFlight inFlight{wakeUp};
};

TEST_F(InFlightTest, AnOperationCountsFromItsBeginningUntilItEnds) {
    auto operation = inFlight.begin();
    EXPECT_EQ(inFlight.count(), 1U);
    operation.end();
    EXPECT_EQ(inFlight.count(), 0U);
    operation.end();
    EXPECT_EQ(inFlight.count(), 0U);
}

TEST_F(InFlightTest, DroppingAnOperationEndsItAndWakesTheLoop) {
    {
        const auto operation = inFlight.begin();
    }
    EXPECT_EQ(inFlight.count(), 0U);
    EXPECT_EQ(wakeUp->count(), 1U);
}

TEST_F(InFlightTest, MovingAnOperationDoesNotEndIt) {
    auto first = inFlight.begin();
    InFlight::Operation second = std::move(first);
    EXPECT_EQ(inFlight.count(), 1U);
    second = inFlight.begin();
    EXPECT_EQ(inFlight.count(), 1U);
}

TEST_F(InFlightTest, AFinishedOperationWaitsForEarlierOnes) {
    auto first = inFlight.begin();
    auto second = inFlight.begin();
    int taken = 0;
    second.finish([&] { taken = 2; });
    EXPECT_FALSE(inFlight.takeOldestFinished().has_value());
    first.finish([&] { taken = 1; });
    (*inFlight.takeOldestFinished())();
    EXPECT_EQ(taken, 1);
    (*inFlight.takeOldestFinished())();
    EXPECT_EQ(taken, 2);
    EXPECT_EQ(inFlight.count(), 0U);
}

TEST_F(InFlightTest, AnEndedOperationHoldsUpNobody) {
    auto first = inFlight.begin();
    auto second = inFlight.begin();
    second.finish([] {});
    first.end();
    EXPECT_TRUE(inFlight.takeOldestFinished().has_value());
}

TEST_F(InFlightTest, EndingDropsAContinuationThatWasNotTakenUp) {
    const auto owned = std::make_shared<int>(0);
    auto operation = inFlight.begin();
    operation.finish([owned] {});
    EXPECT_EQ(owned.use_count(), 2);
    operation.end();
    EXPECT_EQ(owned.use_count(), 1);
    operation.finish([owned] {});
    EXPECT_EQ(owned.use_count(), 1);
}

}  // namespace
}  // namespace mireth::headless
