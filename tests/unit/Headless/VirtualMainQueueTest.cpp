// The order in which virtual time lets things happen.
#include "MirethVex/Headless/VirtualMainQueue.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "MirethVex/Headless/LoopBackgroundExecutor.hpp"

namespace mireth::headless {
namespace {

using namespace std::chrono_literals;
using platform::Seconds;
using ::testing::ElementsAre;
using Log = std::vector<std::string>;

class VirtualMainQueueTest : public ::testing::Test {
  protected:
    Work note(std::string text) {
        return [this, text = std::move(text)] { log.push_back(text); };
    }

    std::shared_ptr<VirtualMainQueue> queue = std::make_shared<VirtualMainQueue>();
    LoopBackgroundExecutor background{queue};
    Log log;
};

TEST_F(VirtualMainQueueTest, PostedWorkRunsInOrderAndNeverInline) {
    queue->post(note("a"));
    queue->post(note("b"));
    EXPECT_TRUE(log.empty());
    queue->drain();
    EXPECT_THAT(log, ElementsAre("a", "b"));
}

TEST_F(VirtualMainQueueTest, PostedWorkTakesNoTime) {
    queue->post(note("a"));
    queue->drain();
    EXPECT_EQ(queue->now(), 0ns);
}

TEST_F(VirtualMainQueueTest, DueItemsRunInTheOrderOfTheirTime) {
    queue->postAfter(Seconds(2), note("late"));
    queue->postAfter(Seconds(1), note("early"));
    queue->advance(Seconds(3));
    EXPECT_THAT(log, ElementsAre("early", "late"));
    EXPECT_EQ(queue->now(), 3s);
}

TEST_F(VirtualMainQueueTest, AtOneInstantTheOrderOfSettingDecides) {
    queue->postAfter(Seconds(1), note("first"));
    const auto timer = queue->scheduleRepeating(Seconds(1), note("second"));
    queue->postAfter(Seconds(1), note("third"));
    queue->advance(Seconds(1));
    EXPECT_THAT(log, ElementsAre("first", "second", "third"));
}

TEST_F(VirtualMainQueueTest, ARepeatingTimerKeepsItsPlaceAtALaterInstant) {
    const auto timer = queue->scheduleRepeating(Seconds(1), note("timer"));
    queue->postAfter(Seconds(2), note("delayed"));
    queue->advance(Seconds(2));
    EXPECT_THAT(log, ElementsAre("timer", "timer", "delayed"));
}

TEST_F(VirtualMainQueueTest, TimersComeBeforeStepsOfTheSameInstantThoughSetLater) {
    queue->scheduleStep(1s, note("step one"));
    queue->scheduleStep(1s, note("step two"));
    queue->postAfter(Seconds(1), note("timer"));
    queue->advance(Seconds(1));
    EXPECT_THAT(log, ElementsAre("timer", "step one", "step two"));
}

TEST_F(VirtualMainQueueTest, BetweenTwoDueItemsAllThatTheFirstSetOffRuns) {
    queue->postAfter(Seconds(1), [this] {
        log.emplace_back("first");
        background.post([this] {
            log.emplace_back("background");
            queue->post(note("main again"));
        });
    });
    queue->postAfter(Seconds(1), note("second"));
    queue->advance(Seconds(1));
    EXPECT_THAT(log, ElementsAre("first", "background", "main again", "second"));
}

TEST_F(VirtualMainQueueTest, MainAndBackgroundWorkShareOneOrder) {
    queue->post(note("main 1"));
    background.post(note("background"));
    queue->post(note("main 2"));
    queue->drain();
    EXPECT_THAT(log, ElementsAre("main 1", "background", "main 2"));
}

TEST_F(VirtualMainQueueTest, BackgroundWorkIsNotOnMain) {
    std::vector<bool> isMain;
    background.post([&] { isMain.push_back(queue->isCurrent()); });
    queue->post([&] { isMain.push_back(queue->isCurrent()); });
    queue->drain();
    EXPECT_THAT(isMain, ElementsAre(false, true));
    EXPECT_TRUE(queue->isCurrent());
}

TEST_F(VirtualMainQueueTest, AnotherThreadIsNotOnMain) {
    bool isMain = true;
    std::thread([&] { isMain = queue->isCurrent(); }).join();
    EXPECT_FALSE(isMain);
}

TEST_F(VirtualMainQueueTest, TimeStandsStillWhileSomethingIsInFlight) {
    queue->postAfter(Seconds(1), note("timer"));
    auto operation = queue->inFlight()->begin();
    std::thread other([this, operation = std::move(operation)]() mutable {
        std::this_thread::sleep_for(20ms);
        queue->post([this] { log.push_back("answer at " + std::to_string(queue->now().count())); });
        operation.end();
    });
    queue->advance(Seconds(1));
    other.join();
    EXPECT_THAT(log, ElementsAre("answer at 0", "timer"));
}

TEST_F(VirtualMainQueueTest, RepeatingTimersKeepTheirPhaseExactly) {
    std::vector<VirtualMainQueue::Instant> ticks;
    const auto timer = queue->scheduleRepeating(Seconds(0.1), [&] { ticks.push_back(queue->now()); });
    queue->advance(Seconds(0.35));
    EXPECT_THAT(ticks, ElementsAre(100ms, 200ms, 300ms));
}

TEST_F(VirtualMainQueueTest, NoTickBeginsAfterInvalidation) {
    auto timer = queue->scheduleRepeating(Seconds(1), note("tick"));
    queue->postAfter(Seconds(1.5), [&] { timer->invalidate(); });
    queue->advance(Seconds(5));
    EXPECT_THAT(log, ElementsAre("tick"));
    timer->invalidate();
}

TEST_F(VirtualMainQueueTest, ATickMayDropItsOwnTimer) {
    std::unique_ptr<platform::Timer> timer;
    timer = queue->scheduleRepeating(Seconds(1), [&] {
        log.emplace_back("tick");
        timer.reset();
        log.emplace_back("still here");
    });
    queue->advance(Seconds(3));
    EXPECT_THAT(log, ElementsAre("tick", "still here"));
}

TEST_F(VirtualMainQueueTest, ATimerMayOutliveItsQueue) {
    auto timer = queue->scheduleRepeating(Seconds(1), note("tick"));
    queue.reset();
    timer.reset();
    EXPECT_TRUE(log.empty());
}

TEST_F(VirtualMainQueueTest, ADelayOfZeroOrLessIsAPost) {
    queue->postAfter(Seconds(0), note("zero"));
    queue->postAfter(Seconds(-5), note("negative"));
    queue->post(note("posted"));
    queue->drain();
    EXPECT_THAT(log, ElementsAre("zero", "negative", "posted"));
}

TEST_F(VirtualMainQueueTest, AnEndlessDelayNeverComes) {
    queue->postAfter(Seconds(std::numeric_limits<double>::infinity()), note("never"));
    queue->advance(Seconds(1000));
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(queue->onceCount(), 1U);
}

TEST_F(VirtualMainQueueTest, WhatThrowsDoesNotEndTheLoop) {
    queue->post([] { throw std::runtime_error("boom"); });
    queue->post([] { throw 1; });
    queue->post(note("after"));
    ::testing::internal::CaptureStderr();
    queue->drain();
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), ::testing::HasSubstr("boom"));
    EXPECT_THAT(log, ElementsAre("after"));
}

TEST_F(VirtualMainQueueTest, RunUntilStopsAsSoonAsItIsDone) {
    for (int index = 0; index < 3; ++index) {
        queue->postAfter(Seconds(index + 1), note(std::to_string(index)));
    }
    EXPECT_TRUE(queue->runUntil([this] { return log.size() == 2; }));
    EXPECT_EQ(queue->now(), 2s);
}

TEST_F(VirtualMainQueueTest, RunUntilGivesUpWhenNothingCanHappen) {
    EXPECT_FALSE(queue->runUntil([] { return false; }));
    EXPECT_FALSE(queue->runUntil([] { return false; }, 7s));
    EXPECT_EQ(queue->now(), 7s);
}

TEST_F(VirtualMainQueueTest, ShutDownDropsEverythingWithoutRunningIt) {
    const auto alive = std::make_shared<int>(0);
    queue->post([alive, this] { log.emplace_back("posted"); });
    queue->postAfter(Seconds(1), [alive, this] { log.emplace_back("due"); });
    auto operation = queue->inFlight()->begin();
    operation.finish([alive, this] { log.emplace_back("finished"); });
    queue->shutDown();
    queue->post([alive, this] { log.emplace_back("later"); });
    queue->postAfter(Seconds(1), [alive, this] { log.emplace_back("much later"); });
    queue->advance(Seconds(2));
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(alive.use_count(), 1);
}

}  // namespace
}  // namespace mireth::headless
