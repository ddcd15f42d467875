// The main queue in real time: sleeping, waking, and knowing when all is done.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "MirethVex/Headless/TrackedBackgroundExecutor.hpp"
#include "MirethVex/Headless/VirtualMainQueue.hpp"

namespace mireth::headless {
namespace {

using namespace std::chrono_literals;
using platform::Seconds;
using ::testing::ElementsAre;
using Steady = std::chrono::steady_clock;

/// One thread for each piece of work.
class ThreadPerWork final : public platform::BackgroundExecutor {
  public:
    ~ThreadPerWork() override { join(); }
    void post(Work work) override {
        const std::lock_guard lock(mutex_);
        threads_.emplace_back([work = std::move(work)]() mutable { work(); });
    }
    void join() {
        std::vector<std::thread> threads;
        {
            const std::lock_guard lock(mutex_);
            threads.swap(threads_);
        }
        for (auto& thread : threads) {
            thread.join();
        }
    }

  private:
    std::mutex mutex_;
    std::vector<std::thread> threads_;
};

TEST(PacedQueue, TimeFollowsTheSteadyClockTimesThePace) {
    VirtualMainQueue queue(100.0);
    const auto begin = Steady::now();
    queue.advance(Seconds(5));
    const auto real = Steady::now() - begin;
    EXPECT_GE(real, 49ms);
    EXPECT_GE(queue.now(), 5s);
}

TEST(PacedQueue, TimeDoesNotPassBeforeTheFirstDrive) {
    VirtualMainQueue queue(1000.0);
    std::this_thread::sleep_for(5ms);
    EXPECT_EQ(queue.now(), 0ns);
}

TEST(PacedQueue, DueItemsKeepTheirOrder) {
    VirtualMainQueue queue(100.0);
    std::vector<std::string> log;
    queue.scheduleStep(1s, [&] { log.emplace_back("step"); });
    queue.postAfter(Seconds(1), [&] { log.emplace_back("timer"); });
    queue.postAfter(Seconds(0.5), [&] { log.emplace_back("early"); });
    queue.advance(Seconds(1.5));
    EXPECT_THAT(log, ElementsAre("early", "timer", "step"));
}

TEST(PacedQueue, MissedTicksAreLeftOutAndThePhaseIsKept) {
    VirtualMainQueue queue(100.0);
    std::vector<VirtualMainQueue::Instant> ticks;
    const auto timer = queue.scheduleRepeating(Seconds(1), [&] {
        ticks.push_back(queue.now());
        if (ticks.size() == 1) {
            std::this_thread::sleep_for(25ms);
        }
    });
    queue.runUntil([&] { return ticks.size() == 2; });
    // One tick at 1 s; work until past 3.5 s; the ticks of 2 s and 3 s come as one late tick.
    EXPECT_GE(ticks[1], 3500ms);
    queue.runUntil([&] { return ticks.size() == 3; });
    EXPECT_GE(ticks[2], 4s);
}

TEST(PacedQueue, APostFromAnotherThreadWakesTheLoop) {
    VirtualMainQueue queue(1.0);
    bool arrived = false;
    queue.postAfter(Seconds(60), [] {});
    std::thread other([&] {
        std::this_thread::sleep_for(10ms);
        queue.post([&] { arrived = true; });
    });
    EXPECT_TRUE(queue.runUntil([&] { return arrived; }, 30s));
    other.join();
}

TEST(PacedQueue, DrainWaitsForWorkOnOtherThreadsAndWhatItSetsOff) {
    VirtualMainQueue queue(1.0);
    const auto threads = std::make_shared<ThreadPerWork>();
    TrackedBackgroundExecutor background(threads, queue.inFlight());
    std::atomic<int> hops = 0;
    for (int index = 0; index < 20; ++index) {
        background.post([&] {
            std::this_thread::sleep_for(1ms);
            queue.post([&] { background.post([&] { ++hops; }); });
        });
    }
    queue.drain();
    EXPECT_EQ(hops, 20);
    EXPECT_EQ(queue.inFlight()->count(), 0U);
}

TEST(PacedQueue, WorkThatAnExecutorDropsIsNoLongerInFlight) {
    struct Dropping final : platform::BackgroundExecutor {
        void post(Work) override {}
    };
    VirtualMainQueue queue(1.0);
    TrackedBackgroundExecutor background(std::make_shared<Dropping>(), queue.inFlight());
    background.post([] {});
    EXPECT_EQ(queue.inFlight()->count(), 0U);
    queue.drain();
}

}  // namespace
}  // namespace mireth::headless
