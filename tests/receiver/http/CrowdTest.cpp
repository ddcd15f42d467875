// Who makes room for whom when all threads are taken.
#include "http/Crowd.hpp"

#include <gtest/gtest.h>

namespace mireth::receiver {
namespace {

using namespace std::chrono_literals;
using Pace = Crowd::Pace;

class CrowdTest : public testing::Test {
  protected:
    const Crowd::Clock::time_point start_{1h};
    Crowd crowd_;
};

TEST_F(CrowdTest, NobodyMakesRoomForNobody) {
    const Pace silent{.since = start_};
    const CrowdWait waiting(crowd_, silent);
    EXPECT_FALSE(crowd_.givesWay(silent, start_ + 1h));
    crowd_.joined(start_);
    crowd_.serveOne();
    crowd_.serveOne();
    EXPECT_FALSE(crowd_.givesWay(silent, start_ + 1h));
}

TEST_F(CrowdTest, WhoHardlyMovesMakesRoomAtOnceAfterItsTrialForOneEach) {
    const Pace silent{.since = start_};
    const Pace dripping{.since = start_, .bytes = 2000};
    const CrowdWait first(crowd_, silent);
    const CrowdWait second(crowd_, dripping);
    crowd_.joined(start_ + 2s);
    EXPECT_FALSE(crowd_.givesWay(dripping, start_ + 1999ms));
    EXPECT_TRUE(crowd_.givesWay(dripping, start_ + 2s));
    EXPECT_FALSE(crowd_.givesWay(silent, start_ + 2s));
}

TEST_F(CrowdTest, TheSlowestOfThoseThatMoveMakeRoomOnceSomebodyHasWaitedTooLong) {
    const Pace slow{.since = start_, .bytes = 20'000};
    const Pace slower{.since = start_, .bytes = 10'000};
    const Pace quick{.since = start_, .bytes = 1'000'000};
    const Pace fresh{.since = start_ + 3s};
    const CrowdWait one(crowd_, slow);
    const CrowdWait two(crowd_, slower);
    const CrowdWait three(crowd_, quick);
    const CrowdWait four(crowd_, fresh);
    crowd_.joined(start_ + 2s);
    crowd_.joined(start_ + 3s);
    EXPECT_FALSE(crowd_.givesWay(slower, start_ + 3999ms));
    // One has waited for two seconds, so one makes room.
    EXPECT_FALSE(crowd_.givesWay(slow, start_ + 4s));
    EXPECT_FALSE(crowd_.givesWay(fresh, start_ + 4s));
    EXPECT_TRUE(crowd_.givesWay(slower, start_ + 4s));
    EXPECT_FALSE(crowd_.givesWay(slower, start_ + 4s));
}

TEST_F(CrowdTest, AsManyMakeRoomAsHaveWaitedTooLong) {
    const Pace slow{.since = start_, .bytes = 20'000};
    const Pace slower{.since = start_, .bytes = 10'000};
    const Pace quick{.since = start_, .bytes = 1'000'000};
    const CrowdWait one(crowd_, slow);
    const CrowdWait two(crowd_, slower);
    const CrowdWait three(crowd_, quick);
    crowd_.joined(start_);
    crowd_.joined(start_);
    EXPECT_FALSE(crowd_.givesWay(quick, start_ + 4s));
    EXPECT_TRUE(crowd_.givesWay(slow, start_ + 4s));
}

TEST_F(CrowdTest, WhoDoesNotWaitForItsClientIsNotCompared) {
    const Pace working{.since = start_};  // the receiver is at work for it
    const Pace slow{.since = start_, .bytes = 20'000};
    {
        const CrowdWait over(crowd_, working);
    }
    const CrowdWait waiting(crowd_, slow);
    crowd_.joined(start_);
    EXPECT_TRUE(crowd_.givesWay(slow, start_ + 2s));
}

}  // namespace
}  // namespace mireth::receiver
