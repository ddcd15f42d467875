// The allowance of uploads.
#include "access/RateLimiter.hpp"

#include <gtest/gtest.h>

namespace mireth::receiver {
namespace {

using namespace std::chrono_literals;

TEST(RateLimiter, AllowsTheBurstAndThenTheRate) {
    RateLimiter limiter;
    const UploadRate rate{.perSecond = 2, .burst = 3};
    RateLimiter::Instant now{};
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(limiter.take("b", "p", rate, now));
    }
    EXPECT_FALSE(limiter.take("b", "p", rate, now));
    now += 499ms;
    EXPECT_FALSE(limiter.take("b", "p", rate, now));
    now += 1ms;
    EXPECT_TRUE(limiter.take("b", "p", rate, now));
    EXPECT_FALSE(limiter.take("b", "p", rate, now));
}

TEST(RateLimiter, NeverHoldsMoreThanTheBurst) {
    RateLimiter limiter;
    const UploadRate rate{.perSecond = 2, .burst = 3};
    RateLimiter::Instant now{};
    EXPECT_TRUE(limiter.take("b", "p", rate, now));
    now += 1h;
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(limiter.take("b", "p", rate, now));
    }
    EXPECT_FALSE(limiter.take("b", "p", rate, now));
}

TEST(RateLimiter, ProjectsDoNotShare) {
    RateLimiter limiter;
    const UploadRate rate{.perSecond = 0, .burst = 1};
    EXPECT_TRUE(limiter.take("b", "p", rate, {}));
    EXPECT_FALSE(limiter.take("b", "p", rate, {}));
    EXPECT_TRUE(limiter.take("b", "q", rate, {}));
}

TEST(RateLimiter, AnEarlierInstantGivesNothingBack) {
    RateLimiter limiter;
    const UploadRate rate{.perSecond = 1, .burst = 1};
    const RateLimiter::Instant later{10s};
    EXPECT_TRUE(limiter.take("b", "p", rate, later));
    EXPECT_FALSE(limiter.take("b", "p", rate, later - 5s));
    EXPECT_FALSE(limiter.take("b", "p", rate, later));
    EXPECT_TRUE(limiter.take("b", "p", rate, later + 1s));
}

}  // namespace
}  // namespace mireth::receiver
