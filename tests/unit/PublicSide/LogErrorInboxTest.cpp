#include "PublicSide/LogErrorInbox.hpp"

#include <gmock/gmock.h>

#include <atomic>
#include <cstddef>
#include <deque>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "PrivateSide/Logger/LogOutletScope.hpp"
#include "support/ManualMainQueue.hpp"

namespace mireth {
namespace {

using test::ManualMainQueue;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// The test's thread is the main thread.
struct LogErrors : testing::Test {
    std::shared_ptr<ManualMainQueue> mainQueue = std::make_shared<ManualMainQueue>();
    /// The times of the errors that were handled, and what else is to happen then.
    std::vector<std::int64_t> handled;
    std::function<void(const LogErrorData&)> whenHandled = [](const LogErrorData&) {};
    std::shared_ptr<LogErrorInbox> inbox =
        std::make_shared<LogErrorInbox>(mainQueue, [this](const LogErrorData& error) {
            EXPECT_TRUE(mainQueue->isCurrent());
            handled.push_back(error.detectionTime);
            whenHandled(error);
        });

    static LogErrorData at(std::int64_t time) { return {time, "e"}; }
    void addElsewhere(std::vector<std::int64_t> times) const {
        std::thread([this, &times] {
            for (const auto time : times) {
                inbox->add(at(time));
            }
        }).join();
    }
    /// Runs what is posted now, and says how much that was.
    int postedTurns() const {
        int turns = 0;
        while (mainQueue->runOne()) {
            ++turns;
        }
        return turns;
    }
    /// Lets the time pass after which main looks again.
    void passInterval() const { mainQueue->advance(LogErrorInbox::interval); }
};

TEST_F(LogErrors, OneLoggedOnMainIsHandledAtOnce) {
    inbox->add(at(1));
    EXPECT_THAT(handled, ElementsAre(1));
    EXPECT_EQ(postedTurns(), 0);
}

TEST_F(LogErrors, OneLoggedElsewhereIsHandledInALaterTurnOfMain) {
    addElsewhere({1});
    EXPECT_THAT(handled, IsEmpty());
    mainQueue->runAll();
    EXPECT_THAT(handled, ElementsAre(1));
}

TEST_F(LogErrors, TheTimeAndTheMessageArriveAsTheyWereGiven) {
    std::optional<LogErrorData> arrived;
    whenHandled = [&arrived](const LogErrorData& error) { arrived = error; };
    std::thread([this] { inbox->add({42, std::nullopt}); }).join();
    mainQueue->runAll();
    EXPECT_EQ(arrived, (LogErrorData{42, std::nullopt}));
    std::thread([this] { inbox->add({43, "text"}); }).join();
    passInterval();
    EXPECT_EQ(arrived, (LogErrorData{43, "text"}));
}

TEST_F(LogErrors, ThoseThatWaitTakeOneTurnTogetherAndKeepTheirOrder) {
    addElsewhere({1, 2, 3});
    EXPECT_EQ(postedTurns(), 1);
    EXPECT_THAT(handled, ElementsAre(1, 2, 3));
}

TEST_F(LogErrors, WhatComesSoonAfterATurnWaitsForMainToLookAgainByItself) {
    addElsewhere({1});
    EXPECT_EQ(postedTurns(), 1);
    for (std::int64_t time = 2; time <= 4; ++time) {
        addElsewhere({time});
        EXPECT_EQ(postedTurns(), 0);
        EXPECT_EQ(handled.back(), time - 1);
        passInterval();
        EXPECT_EQ(handled.back(), time);
    }
}

TEST_F(LogErrors, OnceMainHasLookedInVainTheNextOneGetsATurn) {
    addElsewhere({1});
    mainQueue->runAll();
    passInterval();
    addElsewhere({2});
    EXPECT_EQ(postedTurns(), 1);
    EXPECT_THAT(handled, ElementsAre(1, 2));
    passInterval();
    mainQueue->advance(LogErrorInbox::interval * 100);
    addElsewhere({3});
    EXPECT_EQ(postedTurns(), 1);
    EXPECT_THAT(handled, ElementsAre(1, 2, 3));
}

TEST_F(LogErrors, DrainingHandlesWhatWaitsAtOnceAndOnce) {
    addElsewhere({1, 2});
    inbox->drain();
    EXPECT_THAT(handled, ElementsAre(1, 2));
    inbox->drain();
    mainQueue->runAll();
    passInterval();
    EXPECT_THAT(handled, ElementsAre(1, 2));
    addElsewhere({3});
    mainQueue->runAll();
    EXPECT_THAT(handled, ElementsAre(1, 2, 3));
}

TEST_F(LogErrors, OneLoggedOnMainComesAfterThoseThatWaitAlready) {
    addElsewhere({1, 2});
    inbox->add(at(3));
    EXPECT_THAT(handled, ElementsAre(1, 2, 3));
    addElsewhere({4});
    mainQueue->runAll();
    EXPECT_THAT(handled, ElementsAre(1, 2, 3, 4));
}

TEST_F(LogErrors, OneLoggedWhileOthersAreHandledComesAfterThem) {
    whenHandled = [this](const LogErrorData& error) {
        if (error.detectionTime == 1) {
            addElsewhere({3});
            inbox->add(at(4));
        }
    };
    addElsewhere({1, 2});
    mainQueue->runAll();
    EXPECT_THAT(handled, ElementsAre(1, 2, 3, 4));
}

TEST_F(LogErrors, AThreadThatLogsWithoutEndDoesNotKeepMainBusy) {
    whenHandled = [this](const LogErrorData& error) {
        if (error.detectionTime < 5) {
            addElsewhere({error.detectionTime + 1});
        }
    };
    addElsewhere({1});
    EXPECT_EQ(postedTurns(), 1);
    EXPECT_THAT(handled, ElementsAre(1)) << "the next one has a turn of its own";
    for (std::size_t turns = 2; turns <= 5; ++turns) {
        passInterval();
        EXPECT_EQ(handled.size(), turns);
    }
}

TEST_F(LogErrors, WhatTheHandlerThrowsEndsTheTurnAndTheRestComesWithTheNext) {
    whenHandled = [](const LogErrorData& error) {
        if (error.detectionTime == 1) {
            throw std::runtime_error("no memory");
        }
    };
    addElsewhere({1, 2});
    EXPECT_THROW(mainQueue->runOne(), std::runtime_error);
    EXPECT_THAT(handled, ElementsAre(1));
    passInterval();
    EXPECT_THAT(handled, ElementsAre(1, 2));
}

TEST_F(LogErrors, OneLoggedInsideAListenerOrTheSystemLogIsHandledAsInsideItAndNoOther) {
    std::map<std::int64_t, LogOutlet> inside;
    whenHandled = [&inside](const LogErrorData& error) {
        inside[error.detectionTime] = LogOutletScope::current();
    };
    std::thread([this] {
        inbox->add(at(1));
        {
            const LogOutletScope scope(LogOutlet::listener);
            inbox->add(at(2));
            const LogOutletScope further(LogOutlet::systemLog);
            inbox->add(at(3));
            const LogOutletScope notOut(LogOutlet::listener);
            inbox->add(at(4));
        }
        inbox->add(at(5));
    }).join();
    mainQueue->runAll();
    EXPECT_THAT(inside, ElementsAre(Pair(1, LogOutlet::none), Pair(2, LogOutlet::listener),
                                    Pair(3, LogOutlet::systemLog), Pair(4, LogOutlet::systemLog),
                                    Pair(5, LogOutlet::none)));
    EXPECT_EQ(LogOutletScope::current(), LogOutlet::none);
}

TEST_F(LogErrors, WhatWaitsWhenTheInboxGoesIsDropped) {
    addElsewhere({1});
    inbox.reset();
    mainQueue->runAll();
    EXPECT_THAT(handled, IsEmpty());
}

TEST_F(LogErrors, TheHandlerMayDropTheInbox) {
    whenHandled = [this](const LogErrorData&) { inbox.reset(); };
    inbox->add(at(1));
    EXPECT_EQ(inbox, nullptr);
    EXPECT_THAT(handled, ElementsAre(1));
}

/// Loses what it is given until it is told to keep it.
struct ForgetfulQueue final : platform::MainQueue {
    void post(Work work) override {
        ++posts;
        if (keeps) {
            kept.push_back(std::move(work));
        }
    }
    void postAfter(platform::Seconds, Work work) override { post(std::move(work)); }
    std::unique_ptr<platform::Timer> scheduleRepeating(platform::Seconds, Work) override { return nullptr; }
    bool isCurrent() const noexcept override { return false; }

    bool keeps = false;
    int posts = 0;
    std::deque<Work> kept;
};

TEST(LogErrorsOnAQueueThatDrops, DoNotPileUpAndTheNextOneIsPostedAgain) {
    const auto queue = std::make_shared<ForgetfulQueue>();
    std::vector<std::int64_t> handled;
    const auto inbox = std::make_shared<LogErrorInbox>(
        queue, [&handled](const LogErrorData& error) { handled.push_back(error.detectionTime); });
    inbox->add({1, "lost"});
    inbox->add({2, "lost"});
    EXPECT_EQ(queue->posts, 2);
    queue->keeps = true;
    inbox->add({3, "kept"});
    ASSERT_EQ(queue->kept.size(), 1U);
    queue->kept[0]();
    EXPECT_THAT(handled, ElementsAre(3));
}

TEST_F(LogErrors, OfManyThreadsNoneIsLostOrDoubledAndEachKeepsItsOrder) {
    constexpr std::int64_t threads = 4;
    constexpr std::int64_t each = 5000;
    std::atomic<int> running{threads};
    std::vector<std::thread> loggers;
    for (std::int64_t number = 0; number < threads; ++number) {
        loggers.emplace_back([this, number, &running] {
            for (std::int64_t i = 0; i < each; ++i) {
                inbox->add(at(number * each + i));
            }
            --running;
        });
    }
    // Main handles what comes and logs errors of its own meanwhile.
    std::int64_t own = 0;
    while (running > 0) {
        mainQueue->runAll();
        inbox->add(at(-1 - own++));
    }
    for (auto& logger : loggers) {
        logger.join();
    }
    passInterval();
    ASSERT_EQ(handled.size(), static_cast<std::size_t>(threads * each + own));
    std::map<std::int64_t, std::int64_t> next;
    for (const auto time : handled) {
        const std::int64_t source = time < 0 ? -1 : time / each;
        const std::int64_t number = time < 0 ? -1 - time : time % each;
        ASSERT_EQ(number, next[source]++) << "of source " << source;
    }
}

}  // namespace
}  // namespace mireth
