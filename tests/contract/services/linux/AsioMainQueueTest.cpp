#include "platforms/linux/system/AsioMainQueue.hpp"

#include <cmath>
#include <limits>
#include <memory>
#include <thread>

#include "TestSupport.hpp"

namespace mireth::platform {

TEST(AsioMainQueue, TheThreadThatRunsItIsTheMainThread) {
    AsioMainQueue queue;
    EXPECT_TRUE(queue.isCurrent()) << "before the first run";
    bool onRunner = false;
    bool onBuilder = true;
    std::thread runner([&] {
        queue.post([&] {
            onRunner = queue.isCurrent();
            std::thread([&] { onBuilder = queue.isCurrent(); }).join();
            queue.stop();
        });
        queue.run();
    });
    runner.join();
    EXPECT_TRUE(onRunner);
    EXPECT_FALSE(onBuilder);
}

TEST(AsioMainQueue, BeforeItRunsTheProcesssFirstThreadIsTheMainThread) {
    std::unique_ptr<AsioMainQueue> queue;
    std::thread([&queue] {
        queue = std::make_unique<AsioMainQueue>();
        EXPECT_FALSE(queue->isCurrent());
    }).join();
    EXPECT_TRUE(queue->isCurrent());
}

TEST(AsioMainQueue, AStopBeforeTheRunCounts) {
    AsioMainQueue queue;
    bool ran = false;
    queue.post([&] { ran = true; });
    queue.stop();
    queue.run();
    EXPECT_FALSE(ran);
    queue.post([&] { queue.stop(); });
    queue.run();
    EXPECT_TRUE(ran) << "the next run goes on with what is queued";
}

TEST(AsioMainQueue, MissedTicksAreNotMadeUpFor) {
    AsioMainQueue queue;
    int ticks = 0;
    const auto timer = queue.scheduleRepeating(Seconds(0.1), [&] {
        if (++ticks == 1) {
            std::this_thread::sleep_for(std::chrono::milliseconds(350));
        }
    });
    queue.postAfter(Seconds(0.78), [&] { queue.stop(); });
    queue.run();
    // Due at 0.1 (until 0.45), 0.5, 0.6, 0.7; with the missed ones it would be seven.
    EXPECT_GE(ticks, 2);
    EXPECT_LE(ticks, 4);
}

TEST(AsioMainQueue, WorkMayDropTheQueueThatRunsIt) {
    auto queue = std::make_unique<AsioMainQueue>();
    AsioMainQueue& running = *queue;
    bool ranLater = false;
    const auto owned = std::make_shared<int>(0);
    auto timer = queue->scheduleRepeating(Seconds(0.001), [owned] {});
    queue->post([&] { queue.reset(); });
    queue->post([&ranLater, owned] { ranLater = true; });
    running.run();
    EXPECT_FALSE(ranLater);
    EXPECT_EQ(owned.use_count(), 1);
}

TEST(AsioMainQueue, TimesThatMakeNoSenseAreHarmless) {
    AsioMainQueue queue;
    const double infinite = std::numeric_limits<double>::infinity();
    bool endless = false;
    int ran = 0;
    queue.postAfter(Seconds(infinite), [&] { endless = true; });
    queue.postAfter(Seconds(1e300), [&] { endless = true; });
    queue.postAfter(Seconds(std::nan("")), [&] { ++ran; });
    queue.postAfter(Seconds(-infinite), [&] { ++ran; });
    const auto never = queue.scheduleRepeating(Seconds(infinite), [&] { endless = true; });
    int ticks = 0;
    const auto often = queue.scheduleRepeating(Seconds(std::nan("")), [&] { ++ticks; });
    queue.postAfter(Seconds(0.05), [&] { queue.stop(); });
    queue.run();
    EXPECT_FALSE(endless);
    EXPECT_EQ(ran, 2);
    EXPECT_GE(ticks, 1);
    EXPECT_LE(ticks, 51);
}

}  // namespace mireth::platform
