#include "MainQueueContract.hpp"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <thread>
#include <vector>

namespace mireth::test {

using platform::Seconds;

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(MainQueueContract);

TEST_P(MainQueueContract, RunsWorkInTheOrderInWhichItWasPosted) {
    std::vector<int> order;
    for (int i = 0; i < 100; ++i) {
        harness_->queue().post([&order, i] { order.push_back(i); });
    }
    ASSERT_TRUE(harness_->runUntil([&] { return order.size() == 100; }, 10));
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
    }
}

TEST_P(MainQueueContract, NeverRunsPostedWorkInline) {
    bool inner = false;
    bool wasInline = true;
    harness_->queue().post([&] {
        harness_->queue().post([&] { inner = true; });
        wasInline = inner;
    });
    EXPECT_FALSE(inner);
    ASSERT_TRUE(harness_->runUntil([&] { return inner; }, 10));
    EXPECT_FALSE(wasInline);
}

TEST_P(MainQueueContract, WorkRunsOnTheMainThread) {
    bool ran = false;
    bool wasCurrent = false;
    std::thread([&] {
        EXPECT_FALSE(harness_->queue().isCurrent());
        harness_->queue().post([&] {
            wasCurrent = harness_->queue().isCurrent();
            ran = true;
        });
    }).join();
    ASSERT_TRUE(harness_->runUntil([&] { return ran; }, 10));
    EXPECT_TRUE(wasCurrent);
}

TEST_P(MainQueueContract, TakesWorkFromManyThreads) {
    int ran = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int j = 0; j < 100; ++j) {
                harness_->queue().post([&] { ++ran; });
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(harness_->runUntil([&] { return ran == 400; }, 10));
}

TEST_P(MainQueueContract, DelayedWorkRunsNotBeforeItsDelay) {
    const double start = harness_->now();
    double ranAt = -1;
    harness_->queue().postAfter(Seconds(0.1), [&] { ranAt = harness_->now(); });
    ASSERT_TRUE(harness_->runUntil([&] { return ranAt >= 0; }, 10));
    EXPECT_GE(ranAt - start, 0.1 - 1e-9);
}

TEST_P(MainQueueContract, ADelayOfZeroOrLessOrOfNoNumberKeepsThePostedOrder) {
    std::vector<int> order;
    harness_->queue().postAfter(Seconds(-1), [&] { order.push_back(1); });
    harness_->queue().post([&] { order.push_back(2); });
    harness_->queue().postAfter(Seconds(0), [&] { order.push_back(3); });
    harness_->queue().postAfter(Seconds(std::nan("")), [&] { order.push_back(4); });
    harness_->queue().post([&] { order.push_back(5); });
    ASSERT_TRUE(harness_->runUntil([&] { return order.size() == 5; }, 10));
    EXPECT_EQ(order, (std::vector{1, 2, 3, 4, 5}));
}

TEST_P(MainQueueContract, TheFirstTickComesAfterOneInterval) {
    const double start = harness_->now();
    double firstTick = -1;
    const auto timer = harness_->queue().scheduleRepeating(Seconds(0.05), [&] {
        if (firstTick < 0) {
            firstTick = harness_->now();
        }
    });
    ASSERT_TRUE(harness_->runUntil([&] { return firstTick >= 0; }, 10));
    EXPECT_GE(firstTick - start, 0.05 - 1e-9);
}

TEST_P(MainQueueContract, TicksKeepTheirPhase) {
    constexpr double interval = 0.1;
    const double start = harness_->now();
    std::vector<double> lateness;
    const auto timer = harness_->queue().scheduleRepeating(Seconds(interval), [&] {
        lateness.push_back(std::fmod(harness_->now() - start + 1e-9, interval));
        // Were the next tick counted from here, it would come 40 ms late, the one after it 80 ms, and so on.
        std::this_thread::sleep_for(std::chrono::milliseconds(40));
    });
    ASSERT_TRUE(harness_->runUntil([&] { return lateness.size() == 11; }, 30));
    std::ranges::sort(lateness);
    EXPECT_LT(lateness[5], 0.02) << "the median, since a busy machine may delay single ticks";
}

TEST_P(MainQueueContract, NoTickBeginsAfterInvalidation) {
    int ticks = 0;
    const auto timer = harness_->queue().scheduleRepeating(Seconds(0.02), [&] { ++ticks; });
    ASSERT_TRUE(harness_->runUntil([&] { return ticks == 2; }, 10));
    timer->invalidate();
    timer->invalidate();
    EXPECT_FALSE(harness_->runUntil([&] { return ticks > 2; }, 0.1));
}

TEST_P(MainQueueContract, DroppingATimerInvalidatesIt) {
    int ticks = 0;
    {
        const auto timer = harness_->queue().scheduleRepeating(Seconds(0.02), [&] { ++ticks; });
    }
    EXPECT_FALSE(harness_->runUntil([&] { return ticks > 0; }, 0.1));
}

TEST_P(MainQueueContract, ATickMayInvalidateItsOwnTimer) {
    int ticks = 0;
    std::unique_ptr<platform::Timer> timer;
    const auto owned = std::make_shared<int>(7);
    timer = harness_->queue().scheduleRepeating(Seconds(0.02), [&, owned] {
        timer->invalidate();
        ticks += *owned;
    });
    EXPECT_FALSE(harness_->runUntil([&] { return ticks > 7; }, 0.1));
    EXPECT_EQ(ticks, 7);
}

TEST_P(MainQueueContract, ATimerMayOutliveTheQueue) {
    auto timer = harness_->queue().scheduleRepeating(Seconds(0.02), [] {});
    harness_->destroyQueue();
    timer->invalidate();
    timer.reset();
}

TEST_P(MainQueueContract, WhatWorkThrowsIsLoggedAndEndsNothing) {
    bool ranAfter = false;
    int ticks = 0;
    harness_->queue().post([] { throw std::runtime_error("work"); });
    harness_->queue().post([] { throw 7; });
    harness_->queue().postAfter(Seconds(0.01), [] { throw std::runtime_error("delayed"); });
    const auto timer = harness_->queue().scheduleRepeating(Seconds(0.02), [&] {
        if (++ticks == 1) {
            throw std::runtime_error("tick");
        }
    });
    harness_->queue().postAfter(Seconds(0.06), [&] { ranAfter = true; });
    ASSERT_TRUE(harness_->runUntil([&] { return ranAfter && ticks >= 2; }, 10));
    EXPECT_EQ(harness_->loggedErrors(), 4);
}

TEST_P(MainQueueContract, NullIsWorkThatDoesNothing) {
    bool ranAfter = false;
    harness_->queue().post(nullptr);
    harness_->queue().postAfter(Seconds(0.01), nullptr);
    const auto timer = harness_->queue().scheduleRepeating(Seconds(0.01), nullptr);
    harness_->queue().postAfter(Seconds(0.05), [&] { ranAfter = true; });
    EXPECT_TRUE(harness_->runUntil([&] { return ranAfter; }, 10));
    EXPECT_EQ(harness_->loggedErrors(), 0);
}

TEST_P(MainQueueContract, WorkStillQueuedAtTheEndIsDroppedWithoutBeingRun) {
    bool ran = false;
    const auto owned = std::make_shared<int>(0);
    harness_->queue().post([&ran, owned] { ran = true; });
    harness_->queue().postAfter(Seconds(0.01), [&ran, owned] { ran = true; });
    EXPECT_EQ(owned.use_count(), 3);
    harness_->destroyQueue();
    EXPECT_FALSE(ran);
    EXPECT_EQ(owned.use_count(), 1);
}

}  // namespace mireth::test
