// Which deadline of a request counts when.
#include "http/RequestDeadlines.hpp"

#include <gtest/gtest.h>

namespace mireth::receiver {
namespace {

using namespace std::chrono_literals;

class RequestDeadlinesTest : public testing::Test {
  protected:
    RequestDeadlinesTest() {
        limits_.headSeconds = 10;
        limits_.idleSeconds = 15;
        limits_.requestSeconds = 120;
    }
    RequestDeadlines deadlines() const { return {limits_, stop_, start_}; }

    const RequestDeadlines::Clock::time_point start_ = RequestDeadlines::Clock::now();
    StopSignal stop_;
    Limits limits_;
};

TEST_F(RequestDeadlinesTest, TheHeadHasItsOwnAndThenTheWholeRequest) {
    auto some = deadlines();
    EXPECT_EQ(some.next(), start_ + 10s);
    some.headCompleted();
    EXPECT_EQ(some.next(), start_ + 120s);
}

TEST_F(RequestDeadlinesTest, TheHeadHasNoMoreThanTheWholeRequest) {
    limits_.headSeconds = 300;
    EXPECT_EQ(deadlines().next(), start_ + 120s);
}

TEST_F(RequestDeadlinesTest, EverySilenceIsMeasuredAnew) {
    auto some = deadlines();
    some.headCompleted();
    some.waitBegins(start_ + 1s);
    EXPECT_EQ(some.next(), start_ + 16s);
    some.waitBegins(start_ + 14s);
    EXPECT_EQ(some.next(), start_ + 29s);
    some.waitBegins(start_ + 119s);
    EXPECT_EQ(some.next(), start_ + 120s);
}

TEST_F(RequestDeadlinesTest, ALateAnswerHasALittleTimeOnce) {
    auto some = deadlines();
    some.headCompleted();
    EXPECT_TRUE(some.answerBegins(start_ + 119s));
    EXPECT_EQ(some.next(), start_ + 134s);
    EXPECT_FALSE(some.answerBegins(start_ + 130s));
    EXPECT_EQ(some.next(), start_ + 134s);
}

TEST_F(RequestDeadlinesTest, AnEarlyAnswerHasTheTimeOfTheRequest) {
    auto some = deadlines();
    some.headCompleted();
    EXPECT_TRUE(some.answerBegins(start_ + 1s));
    EXPECT_EQ(some.next(), start_ + 120s);
}

TEST_F(RequestDeadlinesTest, BytesGiveTimeToAnAnswerOnly) {
    auto some = deadlines();
    some.headCompleted();
    some.moved(1'000'000);
    EXPECT_EQ(some.next(), start_ + 120s);
    some.answerBegins(start_ + 1s);
    some.moved(10 * 32 * 1024);
    EXPECT_EQ(some.next(), start_ + 130s);
}

TEST_F(RequestDeadlinesTest, WhatFollowsTheAnswerShortensAndNeverProlongs) {
    auto some = deadlines();
    some.headCompleted();
    some.lingerBegins(start_ + 1s);
    EXPECT_EQ(some.next(), start_ + 3s);
    auto late = deadlines();
    late.lingerBegins(start_ + 9s);
    EXPECT_EQ(late.next(), start_ + 10s);
}

TEST_F(RequestDeadlinesTest, AStopEndsEverything) {
    auto some = deadlines();
    some.headCompleted();
    some.answerBegins(start_);
    stop_.raise(5s);
    EXPECT_EQ(some.next(), stop_.deadline());
    EXPECT_LT(some.next(), start_ + 120s);
}

}  // namespace
}  // namespace mireth::receiver
