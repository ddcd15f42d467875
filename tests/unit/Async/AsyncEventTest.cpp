#include "Platform/Async/AsyncEvent.hpp"

#include <gmock/gmock.h>

#include <atomic>
#include <boost/asio/thread_pool.hpp>
#include <vector>

#include "support/AsyncPhone.hpp"

namespace mireth {
namespace {

using test::AsyncPhone;
using testing::ElementsAre;

Task<void> waitThen(AsyncEvent event, std::vector<int>& order, int number) {
    co_await event.wait();
    order.push_back(number);
}

TEST(AsyncEvent, WaitersResumeInTheOrderInWhichTheyWaited) {
    const AsyncPhone phone;
    const AsyncEvent event;
    std::vector<int> order;
    phone.start(waitThen(event, order, 1));
    phone.start(waitThen(event, order, 2));
    phone.runUntilIdle();
    EXPECT_TRUE(order.empty());
    EXPECT_FALSE(event.isSet());
    event.set();
    EXPECT_TRUE(order.empty()) << "a waiter resumes on its executor, not inside set()";
    phone.runUntilIdle();
    EXPECT_THAT(order, ElementsAre(1, 2));
    EXPECT_TRUE(event.isSet());
}

TEST(AsyncEvent, WaitingForASetOneEndsToo) {
    const AsyncPhone phone;
    const AsyncEvent event;
    event.set();
    event.set();
    std::vector<int> order;
    phone.start(waitThen(event, order, 1));
    phone.runUntilIdle();
    EXPECT_THAT(order, ElementsAre(1));
}

TEST(AsyncEvent, AWaiterResumesOnItsOwnExecutor) {
    const AsyncPhone phone;
    const AsyncEvent event;
    bool wasInBackground = false;
    const auto wait = [&](AsyncEvent awaited) -> Task<void> {
        co_await awaited.wait();
        wasInBackground = phone.backgroundExecutor->isRunning();
    };
    AsyncPhone::start(phone.background, wait(event));
    phone.runUntilIdle();
    event.set();
    phone.runUntilIdle();
    EXPECT_TRUE(wasInBackground);
}

TEST(AsyncEvent, ThreadsMaySetAndWaitAtOnce) {
    for (int round = 0; round < 200; ++round) {
        asio::thread_pool pool(2);
        const AsyncEvent event;
        std::atomic<int> resumed{0};
        const auto wait = [&resumed](AsyncEvent awaited) -> Task<void> {
            co_await awaited.wait();
            ++resumed;
        };
        for (int i = 0; i < 4; ++i) {
            spawn(Executor(pool.get_executor()), wait(event));
        }
        event.set();
        pool.join();
        ASSERT_EQ(resumed, 4);
    }
}

}  // namespace
}  // namespace mireth
