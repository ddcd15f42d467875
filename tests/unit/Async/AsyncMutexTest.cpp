#include <gmock/gmock.h>

#include <boost/asio/thread_pool.hpp>
#include <vector>

#include "Platform/Async/AsyncEvent.hpp"
#include "Platform/Async/AsyncMutex.hpp"
#include "support/AsyncPhone.hpp"

namespace mireth {
namespace {

using test::AsyncPhone;
using testing::ElementsAre;

Task<void> hold(AsyncMutex mutex, AsyncEvent until, std::vector<int>& order, int number) {
    const AsyncMutex::Lock lock = co_await mutex.lock();
    order.push_back(number);
    co_await until.wait();
    order.push_back(-number);
}

TEST(AsyncMutex, LetsOneAtATimePassInTheOrderOfAsking) {
    const AsyncPhone phone;
    const AsyncMutex mutex;
    const AsyncEvent first;
    const AsyncEvent second;
    const AsyncEvent third;
    std::vector<int> order;
    phone.start(hold(mutex, first, order, 1));
    phone.start(hold(mutex, second, order, 2));
    phone.start(hold(mutex, third, order, 3));
    phone.runUntilIdle();
    EXPECT_THAT(order, ElementsAre(1));
    third.set();
    second.set();
    phone.runUntilIdle();
    EXPECT_THAT(order, ElementsAre(1));
    first.set();
    phone.runUntilIdle();
    EXPECT_THAT(order, ElementsAre(1, -1, 2, -2, 3, -3));
}

TEST(AsyncMutex, NobodyStepsInBetweenTheOneThatLeavesAndTheNextInLine) {
    const AsyncPhone phone;
    const AsyncMutex mutex;
    const AsyncEvent first;
    const AsyncEvent rest;
    rest.set();
    std::vector<int> order;
    phone.start(hold(mutex, first, order, 1));
    phone.start(hold(mutex, rest, order, 2));
    phone.runUntilIdle();
    first.set();
    // The first leaves; the second is next but has not resumed yet.
    phone.mainQueue->runOne();
    phone.start(hold(mutex, rest, order, 3));
    phone.runUntilIdle();
    EXPECT_THAT(order, ElementsAre(1, -1, 2, -2, 3, -3));
}

TEST(AsyncMutex, IsFreeAgainAfterTheLast) {
    const AsyncPhone phone;
    const AsyncMutex mutex;
    const AsyncEvent set;
    set.set();
    std::vector<int> order;
    phone.start(hold(mutex, set, order, 1));
    phone.runUntilIdle();
    phone.start(hold(mutex, set, order, 2));
    phone.runUntilIdle();
    EXPECT_THAT(order, ElementsAre(1, -1, 2, -2));
}

TEST(AsyncMutex, AWaiterThatIsDroppedPassesTheLockOn) {
    AsyncPhone phone;
    const AsyncMutex mutex;
    const AsyncEvent first;
    const AsyncEvent rest;
    rest.set();
    std::vector<int> order;
    phone.start(hold(mutex, first, order, 1));
    AsyncPhone::start(phone.background, hold(mutex, rest, order, 2));
    phone.runUntilIdle();
    phone.start(hold(mutex, rest, order, 3));
    // The second in line will never run again.
    phone.backgroundExecutor.reset();
    first.set();
    phone.mainQueue->runAll();
    EXPECT_THAT(order, ElementsAre(1, -1, 3, -3));
    phone.start(hold(mutex, rest, order, 4));
    phone.mainQueue->runAll();
    EXPECT_THAT(order, ElementsAre(1, -1, 3, -3, 4, -4));
}

TEST(AsyncMutex, GuardsDataThatManyThreadsTouch) {
    asio::thread_pool pool(3);
    const AsyncMutex mutex;
    int unguarded = 0;
    const auto add = [&unguarded](AsyncMutex guard) -> Task<void> {
        for (int i = 0; i < 100; ++i) {
            const AsyncMutex::Lock lock = co_await guard.lock();
            ++unguarded;
        }
    };
    for (int i = 0; i < 6; ++i) {
        spawn(Executor(pool.get_executor()), add(mutex));
    }
    pool.join();
    EXPECT_EQ(unguarded, 600);
}

}  // namespace
}  // namespace mireth
