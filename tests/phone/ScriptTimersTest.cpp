// Timers of the script: counted, remembered, and no failure of theirs is lost.
#include "phone/ScriptTimers.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace mireth::phone {
namespace {

using namespace std::chrono_literals;

class ScriptTimersTest : public ::testing::Test {
  protected:
    headless::VirtualMainQueue queue;
    std::string failure;
    ScriptTimers timers{queue, [this](const std::exception_ptr& thrown) {
                            try {
                                std::rethrow_exception(thrown);
                            } catch (const std::exception& error) {
                                failure = error.what();
                            }
                        }};
};

TEST_F(ScriptTimersTest, ArePendingUntilTheyHaveRun) {
    timers.set(100ms, [] {});
    timers.set(200ms, [this] { EXPECT_EQ(timers.pending(), 1U); });
    EXPECT_EQ(timers.pending(), 2U);
    queue.advance(150ms);
    EXPECT_EQ(timers.pending(), 1U);
    EXPECT_EQ(timers.lastRun(), 100ms);
    queue.advance(1s);
    EXPECT_EQ(timers.pending(), 0U);
    EXPECT_EQ(timers.lastRun(), 200ms);
}

TEST_F(ScriptTimersTest, OneMaySetAnother) {
    timers.set(100ms, [this] { timers.set(100ms, [] {}); });
    queue.advance(150ms);
    EXPECT_EQ(timers.pending(), 1U);
    queue.advance(150ms);
    EXPECT_EQ(timers.pending(), 0U);
    EXPECT_EQ(timers.lastRun(), 200ms);
}

TEST_F(ScriptTimersTest, WhatOneThrowsIsHandedOn) {
    timers.set(100ms, [] { throw std::runtime_error("gone"); });
    queue.advance(1s);
    EXPECT_EQ(failure, "gone");
    EXPECT_EQ(timers.pending(), 0U);
}

}  // namespace
}  // namespace mireth::phone
