// Which slow clients are shed when all threads are taken.
#include "http/SlowClientShedder.hpp"

#include <gtest/gtest.h>

namespace mireth::receiver {
namespace {

using namespace std::chrono_literals;
using ClientWait = SlowClientShedder::ClientWait;

class SlowClientShedderTest : public testing::Test {
  protected:
    const SlowClientShedder::Clock::time_point start_{1h};
    SlowClientShedder shedder_;
};

TEST_F(SlowClientShedderTest, NobodyIsShedForNobody) {
    ClientWait silent(shedder_, {.since = start_});
    EXPECT_FALSE(silent.isShed(start_ + 1h));
    shedder_.enqueued(start_);
    shedder_.dequeued();
    shedder_.dequeued();
    EXPECT_FALSE(silent.isShed(start_ + 1h));
}

TEST_F(SlowClientShedderTest, WhoIsAsGoodAsStalledIsShedOnceMeasuredForOneEach) {
    ClientWait silent(shedder_, {.since = start_});
    ClientWait dripping(shedder_, {.since = start_, .bytes = 2000});
    shedder_.enqueued(start_ + 2s);
    EXPECT_FALSE(dripping.isShed(start_ + 1999ms));
    EXPECT_TRUE(dripping.isShed(start_ + 2s));
    EXPECT_FALSE(silent.isShed(start_ + 2s));
}

TEST_F(SlowClientShedderTest, TheSlowestOfThoseThatMoveAreShedOnceSomebodyHasWaitedTooLong) {
    ClientWait slow(shedder_, {.since = start_, .bytes = 20'000});
    ClientWait slower(shedder_, {.since = start_, .bytes = 10'000});
    const ClientWait quick(shedder_, {.since = start_, .bytes = 1'000'000});
    ClientWait fresh(shedder_, {.since = start_ + 3s});
    shedder_.enqueued(start_ + 2s);
    shedder_.enqueued(start_ + 3s);
    EXPECT_FALSE(slower.isShed(start_ + 3999ms));
    // One has waited for two seconds, so one is shed.
    EXPECT_FALSE(slow.isShed(start_ + 4s));
    EXPECT_FALSE(fresh.isShed(start_ + 4s));
    EXPECT_TRUE(slower.isShed(start_ + 4s));
    EXPECT_FALSE(slower.isShed(start_ + 4s));
}

TEST_F(SlowClientShedderTest, AsManyAreShedAsHaveWaitedTooLong) {
    ClientWait slow(shedder_, {.since = start_, .bytes = 20'000});
    const ClientWait slower(shedder_, {.since = start_, .bytes = 10'000});
    ClientWait quick(shedder_, {.since = start_, .bytes = 1'000'000});
    shedder_.enqueued(start_);
    shedder_.enqueued(start_);
    EXPECT_FALSE(quick.isShed(start_ + 4s));
    EXPECT_TRUE(slow.isShed(start_ + 4s));
}

TEST_F(SlowClientShedderTest, WhoDoesNotWaitForItsClientIsNotCompared) {
    {
        // The receiver is at work for it from here on.
        const ClientWait over(shedder_, {.since = start_});
    }
    ClientWait slow(shedder_, {.since = start_, .bytes = 20'000});
    shedder_.enqueued(start_);
    EXPECT_TRUE(slow.isShed(start_ + 2s));
}

}  // namespace
}  // namespace mireth::receiver
