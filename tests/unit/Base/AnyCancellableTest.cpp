#include "MirethVex/Base/AnyCancellable.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>

namespace mireth {
namespace {

TEST(AnyCancellable, RunsItsActionOnce) {
    int runs = 0;
    AnyCancellable token([&runs] { ++runs; });
    EXPECT_TRUE(token);
    token.cancel();
    token.cancel();
    EXPECT_FALSE(token);
    EXPECT_EQ(runs, 1);
}

TEST(AnyCancellable, DroppingCancels) {
    int runs = 0;
    {
        const AnyCancellable token([&runs] { ++runs; });
    }
    EXPECT_EQ(runs, 1);
}

TEST(AnyCancellable, AnEmptyTokenDoesNothing) {
    AnyCancellable token;
    EXPECT_FALSE(token);
    token.cancel();
}

TEST(AnyCancellable, MovingPassesTheSubscriptionOn) {
    int runs = 0;
    AnyCancellable first([&runs] { ++runs; });
    AnyCancellable second(std::move(first));
    EXPECT_TRUE(second);
    EXPECT_EQ(runs, 0);
    second.cancel();
    EXPECT_EQ(runs, 1);
}

TEST(AnyCancellable, AssignmentCancelsWhatItReplaces) {
    int oldRuns = 0;
    int newRuns = 0;
    AnyCancellable token([&oldRuns] { ++oldRuns; });
    token = AnyCancellable([&newRuns] { ++newRuns; });
    EXPECT_EQ(oldRuns, 1);
    EXPECT_EQ(newRuns, 0);
}

TEST(AnyCancellable, WhatTheActionThrowsEndsThereWithALine) {
    testing::internal::CaptureStderr();
    AnyCancellable cancelled([] { throw std::runtime_error("a bug of the phone's"); });
    cancelled.cancel();
    EXPECT_FALSE(cancelled);
    {
        const AnyCancellable dropped([] { throw 42; });
    }
    AnyCancellable replaced([] { throw 42; });
    replaced = AnyCancellable();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "M-VEX: the end of a subscription threw: a bug of the phone's\n"
              "M-VEX: the end of a subscription threw: An error of an unknown kind.\n"
              "M-VEX: the end of a subscription threw: An error of an unknown kind.\n");
}

TEST(AnyCancellable, TheActionMayDropTheTokenItself) {
    int runs = 0;
    auto token = std::make_unique<AnyCancellable>();
    *token = AnyCancellable([&] {
        ++runs;
        token->cancel();
    });
    token->cancel();
    EXPECT_EQ(runs, 1);
}

}  // namespace
}  // namespace mireth
