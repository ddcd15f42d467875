#include "BackgroundExecutorContract.hpp"

#include <atomic>
#include <stdexcept>
#include <thread>

namespace mireth::test {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(BackgroundExecutorContract);

TEST_P(BackgroundExecutorContract, RunsEveryPostedWorkOnce) {
    Counter ran;
    for (int i = 0; i < 500; ++i) {
        harness_->executor().post([&] { ran.increment(); });
    }
    ASSERT_TRUE(ran.waitFor(500));
    EXPECT_EQ(ran.count(), 500);
}

TEST_P(BackgroundExecutorContract, RunsOnAThreadOfItsOwn) {
    std::thread::id id = std::this_thread::get_id();
    Counter ran;
    harness_->executor().post([&] {
        id = std::this_thread::get_id();
        ran.increment();
    });
    ASSERT_TRUE(ran.waitFor(1));
    EXPECT_NE(id, std::this_thread::get_id());
}

TEST_P(BackgroundExecutorContract, WorkMayPostWork) {
    Counter ran;
    harness_->executor().post([&] { harness_->executor().post([&] { ran.increment(); }); });
    EXPECT_TRUE(ran.waitFor(1));
}

TEST_P(BackgroundExecutorContract, NullIsWorkThatDoesNothing) {
    Counter ran;
    for (int i = 0; i < 8; ++i) {
        harness_->executor().post(nullptr);
    }
    harness_->executor().post([&] { ran.increment(); });
    EXPECT_TRUE(ran.waitFor(1));
    EXPECT_EQ(harness_->loggedErrors(), 0);
}

TEST_P(BackgroundExecutorContract, WhatWorkThrowsIsLoggedAndEndsNothing) {
    Counter ran;
    for (int i = 0; i < 8; ++i) {
        harness_->executor().post([] { throw std::runtime_error("work"); });
    }
    for (int i = 0; i < 8; ++i) {
        harness_->executor().post([&] { ran.increment(); });
    }
    EXPECT_TRUE(ran.waitFor(8));
    harness_->destroyExecutor();
    EXPECT_EQ(harness_->loggedErrors(), 8);
}

TEST_P(BackgroundExecutorContract, DestructionWaitsForRunningWorkAndDropsTheRest) {
    Counter started;
    std::atomic<int> finished = 0;
    const auto owned = std::make_shared<int>(0);
    constexpr int many = 64;
    for (int i = 0; i < many; ++i) {
        harness_->executor().post([&, owned] {
            started.increment();
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
            ++finished;
        });
    }
    ASSERT_TRUE(started.waitFor(1));
    harness_->destroyExecutor();
    EXPECT_EQ(started.count(), finished);
    EXPECT_LT(finished, many);
    EXPECT_EQ(owned.use_count(), 1);
}

}  // namespace mireth::test
