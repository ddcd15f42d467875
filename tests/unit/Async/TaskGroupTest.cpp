#include <gtest/gtest.h>

#include <atomic>
#include <boost/asio/thread_pool.hpp>
#include <optional>
#include <utility>

#include "Platform/Async/TaskGroup.hpp"
#include "support/AsyncPhone.hpp"

namespace mireth {
namespace {

using test::AsyncPhone;

TEST(TaskGroup, IsIdleWhenNothingIsInFlight) {
    const AsyncPhone phone;
    const TaskGroup group;
    const auto idle = phone.start(group.idle());
    phone.runUntilIdle();
    EXPECT_TRUE(idle->succeeded());
}

TEST(TaskGroup, WaitsForEveryTicket) {
    const AsyncPhone phone;
    const TaskGroup group;
    auto first = group.enter();
    auto second = group.enter();
    const auto idle = phone.start(group.idle());
    first.release();
    first.release();
    phone.runUntilIdle();
    EXPECT_FALSE(idle->isDone);
    {
        const TaskGroup::Ticket dropped = std::move(second);
    }
    phone.runUntilIdle();
    EXPECT_TRUE(idle->succeeded());
}

TEST(TaskGroup, ATicketTakenWhileItWaitsIsWaitedForToo) {
    const AsyncPhone phone;
    const TaskGroup group;
    auto first = group.enter();
    const auto idle = phone.start(group.idle());
    phone.runUntilIdle();
    first.release();
    auto second = group.enter();
    phone.runUntilIdle();
    EXPECT_FALSE(idle->isDone);
    second.release();
    phone.runUntilIdle();
    EXPECT_TRUE(idle->succeeded());
}

TEST(TaskGroup, AssigningATicketReleasesTheOneItReplaces) {
    const AsyncPhone phone;
    const TaskGroup group;
    auto ticket = group.enter();
    ticket = group.enter();
    const auto idle = phone.start(group.idle());
    phone.runUntilIdle();
    EXPECT_FALSE(idle->isDone);
    ticket = TaskGroup::Ticket();
    phone.runUntilIdle();
    EXPECT_TRUE(idle->succeeded());
}

TEST(TaskGroup, ThreadsMayEnterAndLeaveWhileOneWaits) {
    for (int round = 0; round < 100; ++round) {
        asio::thread_pool pool(2);
        const Executor executor(pool.get_executor());
        const TaskGroup group;
        std::atomic<int> done{0};
        std::atomic<int> seenAtIdle{-1};
        auto last = std::make_optional(group.enter());
        const auto work = [&done](TaskGroup::Ticket) -> Task<void> {
            ++done;
            co_return;
        };
        const auto wait = [&](TaskGroup awaited) -> Task<void> {
            co_await awaited.idle();
            seenAtIdle = done.load();
        };
        for (int i = 0; i < 8; ++i) {
            spawn(executor, work(group.enter()));
        }
        spawn(executor, wait(group));
        last.reset();
        pool.join();
        ASSERT_EQ(seenAtIdle, 8);
    }
}

}  // namespace
}  // namespace mireth
