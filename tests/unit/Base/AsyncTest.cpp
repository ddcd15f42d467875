#include "MirethVex/Base/Async.hpp"

#include <gmock/gmock.h>

#include <coroutine>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "support/ManualMainQueue.hpp"

namespace mireth {
namespace {

using test::ManualMainQueue;
using testing::ElementsAre;
using testing::IsEmpty;

/// A host's own coroutine type: begins at once, belongs to nobody.
struct HostCoroutine {
    struct promise_type {
        HostCoroutine get_return_object() { return {}; }
        std::suspend_never initial_suspend() noexcept { return {}; }
        std::suspend_never final_suspend() noexcept { return {}; }
        void return_void() {}
        void unhandled_exception() { std::terminate(); }
    };
};

class AsyncResult : public testing::Test {
  protected:
    std::shared_ptr<ManualMainQueue> queue = std::make_shared<ManualMainQueue>();

    template <class T>
    AsyncPromise<T> makePromise() const {
        return AsyncPromise<T>([queue = queue](Work work) { queue->post(std::move(work)); },
                               [queue = queue] { return queue->isCurrent(); });
    }
};

TEST_F(AsyncResult, ThenRunsOnMainAndNeverBeforeItReturns) {
    const auto promise = makePromise<int>();
    promise.fulfil(1);
    bool ran = false;
    promise.async().then([&](int value) {
        EXPECT_EQ(value, 1);
        EXPECT_TRUE(queue->isCurrent());
        ran = true;
    });
    EXPECT_FALSE(ran);
    queue->runAll();
    EXPECT_TRUE(ran);
}

TEST_F(AsyncResult, ThenBeforeTheValueRunsOnMainThoughAnotherThreadFulfils) {
    const auto promise = makePromise<std::string>();
    std::vector<std::string> got;
    promise.async().then([&](const std::string& value) {
        EXPECT_TRUE(queue->isCurrent());
        got.push_back(value);
    });
    std::thread([&] { promise.fulfil("x"); }).join();
    EXPECT_THAT(got, IsEmpty());
    queue->runAll();
    EXPECT_THAT(got, ElementsAre("x"));
}

TEST_F(AsyncResult, SeveralReceiversRunInOrderAndOnceEach) {
    const auto promise = makePromise<int>();
    std::vector<int> order;
    const auto async = promise.async();
    async.then([&](int) { order.push_back(1); });
    async.then([&](int) { order.push_back(2); });
    promise.fulfil(0);
    async.then([&](int) { order.push_back(3); });
    queue->runAll();
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST_F(AsyncResult, OnlyTheFirstValueCounts) {
    const auto promise = makePromise<int>();
    promise.fulfil(1);
    promise.fulfil(2);
    std::vector<int> got;
    promise.async().then([&](int value) { got.push_back(value); });
    queue->runAll();
    EXPECT_THAT(got, ElementsAre(1));
}

TEST_F(AsyncResult, GetIsRefusedOnMainAlsoWhenTheValueIsThere) {
    const auto promise = makePromise<int>();
    EXPECT_THROW((void)promise.async().get(), WaitOnMainThreadError);
    promise.fulfil(1);
    EXPECT_THROW((void)promise.async().get(), WaitOnMainThreadError);
    try {
        (void)promise.async().get();
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(),
                     "Async::get() was called on the main thread; use then() or co_await there.");
    }
}

TEST_F(AsyncResult, GetBlocksAnotherThreadUntilTheValueIsThere) {
    const auto promise = makePromise<int>();
    int got = 0;
    std::thread waiting([&, async = promise.async()] { got = async.get(); });
    promise.fulfil(5);
    waiting.join();
    EXPECT_EQ(got, 5);
}

TEST_F(AsyncResult, IsReadyTellsWhetherTheValueIsThere) {
    const auto promise = makePromise<int>();
    const auto async = promise.async();
    EXPECT_FALSE(async.isReady());
    promise.fulfil(1);
    EXPECT_TRUE(async.isReady());
}

TEST_F(AsyncResult, CoAwaitResumesOnMainWithTheValue) {
    const auto promise = makePromise<std::string>();
    std::string got;
    const auto host = [&](Async<std::string> async) -> HostCoroutine {
        got = co_await async;
        EXPECT_TRUE(queue->isCurrent());
    };
    host(promise.async());
    std::thread([&] { promise.fulfil("later"); }).join();
    EXPECT_EQ(got, "");
    queue->runAll();
    EXPECT_EQ(got, "later");
}

TEST_F(AsyncResult, CoAwaitOfAValueThatIsThereStillSuspends) {
    const auto promise = makePromise<int>();
    promise.fulfil(3);
    int got = 0;
    const auto host = [&](Async<int> async) -> HostCoroutine { got = co_await async; };
    host(promise.async());
    EXPECT_EQ(got, 0);
    queue->runAll();
    EXPECT_EQ(got, 3);
}

TEST_F(AsyncResult, CoAwaitOnAnotherThreadResumesOnMain) {
    for (int round = 0; round < 100; ++round) {
        const auto promise = makePromise<int>();
        int got = 0;
        std::thread::id resumedOn;
        const auto host = [&](Async<int> async) -> HostCoroutine {
            got = co_await async;
            resumedOn = std::this_thread::get_id();
        };
        std::thread starting([&] { host(promise.async()); });
        promise.fulfil(round + 1);
        while (got == 0) {
            queue->runAll();
        }
        starting.join();
        ASSERT_EQ(resumedOn, std::this_thread::get_id());
    }
}

TEST_F(AsyncResult, DroppingEveryCopyDoesNotKeepTheReceiverFromRunning) {
    bool ran = false;
    {
        const auto promise = makePromise<int>();
        promise.async().then([&](int) { ran = true; });
        promise.fulfil(1);
    }
    queue->runAll();
    EXPECT_TRUE(ran);
}

TEST_F(AsyncResult, AValueThatNeverComesLeavesNothingBehind) {
    const auto owned = std::make_shared<int>(1);
    {
        const auto promise = makePromise<int>();
        promise.async().then([owned](int) {});
        EXPECT_EQ(owned.use_count(), 2);
    }
    EXPECT_EQ(owned.use_count(), 1);
}

TEST_F(AsyncResult, AQueueThatGoesWithAReceiverStillPostedIsFreed) {
    const std::weak_ptr<ManualMainQueue> weak = queue;
    {
        const auto promise = makePromise<int>();
        promise.async().then([](int) {});
        promise.fulfil(1);
    }
    queue.reset();
    EXPECT_TRUE(weak.expired());
}

}  // namespace
}  // namespace mireth
