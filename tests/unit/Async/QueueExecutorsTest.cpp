#include "Platform/Async/QueueExecutors.hpp"

#include <gmock/gmock.h>

#include <boost/asio/dispatch.hpp>
#include <boost/asio/thread_pool.hpp>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/AsyncPhone.hpp"

namespace mireth {
namespace {

using test::AsyncPhone;
using testing::ElementsAre;

TEST(MainExecutor, PostedWorkNeverRunsInline) {
    const AsyncPhone phone;
    bool ran = false;
    asio::post(phone.main, [&] { ran = true; });
    EXPECT_FALSE(ran);
    phone.runUntilIdle();
    EXPECT_TRUE(ran);
}

TEST(MainExecutor, ATaskStartedOnMainBeginsAtOnce) {
    const AsyncPhone phone;
    bool ran = false;
    const auto task = [&]() -> Task<void> {
        ran = true;
        co_return;
    };
    phone.start(task());
    EXPECT_TRUE(ran);
}

TEST(MainExecutor, ATaskStartedElsewhereBeginsOnMain) {
    const AsyncPhone phone;
    std::thread::id ranOn;
    const auto task = [&]() -> Task<void> {
        ranOn = std::this_thread::get_id();
        co_return;
    };
    std::thread([&] { phone.start(task()); }).join();
    EXPECT_EQ(ranOn, std::thread::id());
    phone.runUntilIdle();
    EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST(MainExecutor, WorkForAQueueThatIsGoneIsDropped) {
    AsyncPhone phone;
    const auto owned = std::make_shared<int>(1);
    phone.mainQueue.reset();
    asio::post(phone.main, [owned] { ADD_FAILURE() << "ran without a queue"; });
    EXPECT_EQ(owned.use_count(), 1);
}

TEST(BackgroundExecutorOfTasks, WorkForAnExecutorThatIsGoneIsDropped) {
    AsyncPhone phone;
    const auto owned = std::make_shared<int>(1);
    phone.backgroundExecutor.reset();
    asio::post(phone.background, [owned] { ADD_FAILURE() << "ran without an executor"; });
    EXPECT_EQ(owned.use_count(), 1);
}

TEST(SerialExecutor, RunsWorkInOrder) {
    const AsyncPhone phone;
    const Executor serial = makeSerialExecutor(phone.background);
    std::vector<int> order;
    for (int i = 1; i <= 3; ++i) {
        asio::post(serial, [&order, i] { order.push_back(i); });
    }
    EXPECT_TRUE(order.empty());
    phone.runUntilIdle();
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(SerialExecutor, WorkThatThrowsLetsTheNextRun) {
    const AsyncPhone phone;
    const Executor serial = makeSerialExecutor(phone.background);
    bool nextRan = false;
    asio::post(serial, [] { throw std::runtime_error("lost"); });
    asio::post(serial, [&nextRan] { nextRan = true; });
    EXPECT_THROW(phone.backgroundExecutor->runOne(), std::runtime_error);
    EXPECT_FALSE(nextRan);
    phone.runUntilIdle();
    EXPECT_TRUE(nextRan);
}

TEST(SerialExecutor, WorkDispatchedFromItsOwnWorkRunsInline) {
    const AsyncPhone phone;
    const Executor serial = makeSerialExecutor(phone.background);
    std::vector<int> order;
    asio::post(serial, [&] {
        asio::dispatch(serial, [&order] { order.push_back(1); });
        order.push_back(2);
    });
    asio::dispatch(serial, [&order] { order.push_back(3); });
    EXPECT_TRUE(order.empty()) << "ran inline outside its turn";
    phone.runUntilIdle();
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(SerialExecutor, WorkPostedFromItsOwnWorkRunsAfterIt) {
    const AsyncPhone phone;
    const Executor serial = makeSerialExecutor(phone.background);
    std::vector<int> order;
    asio::post(serial, [&] {
        asio::post(serial, [&order] { order.push_back(2); });
        order.push_back(1);
    });
    phone.runUntilIdle();
    EXPECT_THAT(order, ElementsAre(1, 2));
}

/// Drops what it is given until it is told to keep it.
struct ForgetfulBackground final : platform::BackgroundExecutor {
    void post(Work work) override {
        if (keeps) {
            kept.push_back(std::move(work));
        }
    }
    bool keeps = false;
    std::vector<Work> kept;
};

TEST(SerialExecutor, ATurnThatIsDroppedTakesWhatWaitsWithItAndTheNextWorkGetsATurnOfItsOwn) {
    const auto background = std::make_shared<ForgetfulBackground>();
    const Executor serial = makeSerialExecutor(makeBackgroundExecutor(background));
    const auto owned = std::make_shared<int>(1);
    asio::post(serial, [owned] { ADD_FAILURE() << "ran though its turn was dropped"; });
    EXPECT_EQ(owned.use_count(), 1);
    background->keeps = true;
    bool ran = false;
    asio::post(serial, [&ran] { ran = true; });
    ASSERT_EQ(background->kept.size(), 1U);
    background->kept[0]();
    EXPECT_TRUE(ran);
}

TEST(SerialExecutor, WhatWaitsGoesWithTheExecutorBeneath) {
    AsyncPhone phone;
    const Executor serial = makeSerialExecutor(phone.background);
    const auto owned = std::make_shared<int>(1);
    for (int i = 0; i < 2; ++i) {
        asio::post(serial, [owned] { ADD_FAILURE() << "ran without an executor"; });
    }
    EXPECT_EQ(owned.use_count(), 3);
    phone.backgroundExecutor.reset();
    EXPECT_EQ(owned.use_count(), 1);
}

TEST(SerialExecutor, LetsNoTwoThreadsInAtOnce) {
    asio::thread_pool pool(3);
    const Executor serial = makeSerialExecutor(pool.get_executor());
    int unguarded = 0;
    for (int i = 0; i < 600; ++i) {
        asio::post(serial, [&unguarded] { ++unguarded; });
    }
    pool.join();
    EXPECT_EQ(unguarded, 600);
}

TEST(Spawn, NeverBeginsInlineAndSurvivesWhatTheTaskThrows) {
    const AsyncPhone phone;
    bool ran = false;
    const auto task = [&]() -> Task<void> {
        ran = true;
        throw std::runtime_error("lost");
        co_return;
    };
    spawn(phone.main, task());
    EXPECT_FALSE(ran);
    testing::internal::CaptureStderr();
    phone.runUntilIdle();
    EXPECT_TRUE(ran);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "M-VEX: an internal task threw: lost\n");
}

TEST(RunOn, RunsThereAndComesBackWithTheResult) {
    const AsyncPhone phone;
    asio::thread_pool pool(1);
    std::thread::id ranOn;
    std::thread::id cameBackOn;
    std::string result;
    const auto inner = [&]() -> Task<std::string> {
        ranOn = std::this_thread::get_id();
        co_return "result";
    };
    const auto outer = [&]() -> Task<void> {
        auto running = runOn(Executor(pool.get_executor()), inner());
        result = co_await std::move(running);
        cameBackOn = std::this_thread::get_id();
    };
    const auto outcome = phone.start(outer());
    pool.join();
    EXPECT_FALSE(outcome->isDone) << "came back on the other executor";
    phone.runUntilIdle();
    EXPECT_TRUE(outcome->succeeded());
    EXPECT_EQ(result, "result");
    EXPECT_NE(ranOn, std::this_thread::get_id());
    EXPECT_EQ(cameBackOn, std::this_thread::get_id());
}

TEST(RunOn, BringsBackWhatTheTaskThrows) {
    const AsyncPhone phone;
    const auto inner = []() -> Task<void> {
        throw std::runtime_error("thrown there");
        co_return;
    };
    const auto outcome = phone.start(runOn(phone.background, inner()));
    phone.runUntilIdle();
    EXPECT_EQ(outcome->message(), "thrown there");
}

TEST(Task, IsDroppedWithTheQueueItWaitsFor) {
    AsyncPhone phone;
    const auto owned = std::make_shared<int>(1);
    const auto task = [](Executor background, std::shared_ptr<int> held) -> Task<void> {
        const auto nothing = []() -> Task<void> { co_return; };
        auto running = runOn(std::move(background), nothing());
        co_await std::move(running);
        ADD_FAILURE() << "resumed, holding " << *held;
    };
    phone.start(task(phone.background, owned));
    EXPECT_GT(owned.use_count(), 1);
    phone.backgroundExecutor.reset();
    phone.mainQueue->runAll();
    EXPECT_EQ(owned.use_count(), 1);
}

}  // namespace
}  // namespace mireth
