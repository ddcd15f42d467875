// Waiting until the writer input asks for more.
#include "PrivateSide/Recording/VideoAPI/AssetWriterInput.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "tests/support/AsyncPhone.hpp"
#include "tests/support/ScriptedAssetWriter.hpp"

namespace mireth {
namespace {

class AssetWriterInputTest : public ::testing::Test {
  protected:
    std::shared_ptr<test::TaskOutcome> awaitReadiness() {
        return phone_.start(keepAnswer(input_.readyForMoreMediaData(), takesFrames_));
    }
    static Task<void> keepAnswer(Task<bool> task, std::shared_ptr<std::optional<bool>> answer) {
        *answer = co_await std::move(task);
    }

    test::AsyncPhone phone_;
    std::shared_ptr<test::WriterScript> script_ = std::make_shared<test::WriterScript>();
    AssetWriterInput input_{std::make_shared<test::ScriptedInput>(script_), phone_.background};
    std::shared_ptr<std::optional<bool>> takesFrames_ = std::make_shared<std::optional<bool>>();
};

TEST_F(AssetWriterInputTest, QueueBearsTheLibrarysName) {
    EXPECT_TRUE(
        AssetWriterInput::queueLabel.ends_with(".MirethVex.ImageToVideoConverter.AVAssetWriterInput"));
}

TEST_F(AssetWriterInputTest, ReadyInputLetsPass) {
    const auto outcome = awaitReadiness();
    EXPECT_FALSE(outcome->isDone) << "asked for on its own executor";
    phone_.runUntilIdle();
    EXPECT_TRUE(outcome->succeeded());
    EXPECT_EQ(*takesFrames_, true);
}

TEST_F(AssetWriterInputTest, InputThatLetsGoOfItsCallbackEndsTheWait) {
    script_->ready = false;
    const auto outcome = awaitReadiness();
    phone_.runUntilIdle();
    EXPECT_FALSE(outcome->isDone);
    script_->askForMore = nullptr;
    phone_.runUntilIdle();
    EXPECT_TRUE(outcome->succeeded());
    EXPECT_EQ(*takesFrames_, false);
}

TEST_F(AssetWriterInputTest, BusyInputIsWaitedFor) {
    script_->ready = false;
    const auto outcome = awaitReadiness();
    phone_.runUntilIdle();
    EXPECT_FALSE(outcome->isDone);
    script_->askForMore();
    phone_.runUntilIdle();
    EXPECT_TRUE(outcome->succeeded());
}

TEST_F(AssetWriterInputTest, CallbacksAreRequestedOnce) {
    for (int i = 0; i < 3; ++i) {
        const auto outcome = awaitReadiness();
        phone_.runUntilIdle();
        EXPECT_TRUE(outcome->succeeded());
    }
    EXPECT_EQ(std::ranges::count(script_->calls, "requestMediaDataWhenReady"), 1);
}

TEST_F(AssetWriterInputTest, CallbackThatComesTooEarlyIsNotMistakenForReadiness) {
    script_->ready = false;
    const auto outcome = awaitReadiness();
    phone_.runUntilIdle();
    script_->askForMore();
    script_->ready = false;
    phone_.runUntilIdle();
    EXPECT_FALSE(outcome->isDone) << "it was ready only while the callback was on its way";
    script_->askForMore();
    phone_.runUntilIdle();
    EXPECT_TRUE(outcome->succeeded());
}

TEST_F(AssetWriterInputTest, TheEndEndsAWaitAndALaterCallbackDoesNothing) {
    script_->ready = false;
    const auto waiting = awaitReadiness();
    phone_.runUntilIdle();
    const auto finished = phone_.start(input_.markAsFinished());
    phone_.runUntilIdle();
    EXPECT_TRUE(finished->succeeded());
    EXPECT_EQ(script_->calls.back(), "markAsFinished");
    EXPECT_TRUE(waiting->succeeded());
    EXPECT_EQ(*takesFrames_, false);
    script_->askForMore();
    phone_.runUntilIdle();
    EXPECT_EQ(script_->calls.back(), "markAsFinished");
}

TEST_F(AssetWriterInputTest, TheCallbackKeepsNothingAliveAndFindsNobodyAfterTheEnd) {
    std::weak_ptr<platform::WriterInput> input;
    {
        const auto scripted = std::make_shared<test::ScriptedInput>(script_);
        input = scripted;
        const AssetWriterInput dropped(scripted, phone_.background);
        const auto outcome = phone_.start(keepAnswer(dropped.readyForMoreMediaData(), takesFrames_));
        phone_.runUntilIdle();
        EXPECT_TRUE(outcome->succeeded());
    }
    EXPECT_TRUE(input.expired()) << "while the callback is still there";
    script_->askForMore();
    EXPECT_TRUE(phone_.backgroundExecutor->runAll()) << "it came";
    EXPECT_EQ(script_->calls, std::vector<std::string>{"requestMediaDataWhenReady"});
}

}  // namespace
}  // namespace mireth
