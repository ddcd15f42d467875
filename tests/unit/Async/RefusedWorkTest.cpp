// What becomes of work and coroutines that a service does not take, as for want of memory: those that resume
// coroutines are destructors, which must not throw.
#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Platform/Async/AsyncEvent.hpp"
#include "Platform/Async/AsyncMutex.hpp"
#include "Platform/Async/QueueExecutors.hpp"
#include "Platform/Async/SetOnExit.hpp"
#include "Platform/Async/TaskGroup.hpp"
#include "support/AsyncPhone.hpp"

namespace mireth {
namespace {

using test::AsyncPhone;
using testing::ElementsAre;
using testing::StartsWith;

constexpr const char* refusalLine = "M-VEX: the background executor threw: full\n";

/// Keeps what it is given until it is told to refuse it.
struct FullBackground final : platform::BackgroundExecutor {
    void post(Work work) override {
        if (isFull) {
            throw std::runtime_error("full");
        }
        kept.push_back(std::move(work));
    }
    void runAll() {
        for (std::size_t i = 0; i < kept.size(); ++i) {
            std::exchange(kept[i], nullptr)();
        }
        kept.clear();
    }
    bool isFull = false;
    std::vector<Work> kept;
};

class RefusedWork : public testing::Test {
  protected:
    /// Runs `function` while the background is full; what is written to standard error meanwhile.
    template <class Function>
    std::string whileFull(Function function) const {
        background->isFull = true;
        testing::internal::CaptureStderr();
        function();
        background->isFull = false;
        return testing::internal::GetCapturedStderr();
    }

    const std::shared_ptr<FullBackground> background = std::make_shared<FullBackground>();
    const Executor executor = makeBackgroundExecutor(background);
    const AsyncPhone phone;
    const std::shared_ptr<int> owned = std::make_shared<int>(1);
    std::vector<int> order;
};

Task<void> waitFor(AsyncEvent event, std::shared_ptr<int> /*owned*/) {
    co_await event.wait();
    ADD_FAILURE() << "resumed";
}

Task<void> waitUntilIdle(TaskGroup group, std::shared_ptr<int> /*owned*/) {
    co_await group.idle();
    ADD_FAILURE() << "resumed";
}

Task<void> note(AsyncEvent event, std::vector<int>& order, int number) {
    co_await event.wait();
    order.push_back(number);
}

Task<void> hold(AsyncMutex mutex, AsyncEvent until, std::vector<int>& order, int number) {
    const AsyncMutex::Lock lock = co_await mutex.lock();
    order.push_back(number);
    co_await until.wait();
}

TEST_F(RefusedWork, OfASerialExecutorTakesWhatWaitsWithItAndLaterWorkRuns) {
    const Executor serial = makeSerialExecutor(executor);
    asio::post(serial, [] {});
    asio::post(serial, [held = owned] { ADD_FAILURE() << "ran without a turn"; });
    EXPECT_EQ(whileFull([&] { background->runAll(); }), refusalLine);
    EXPECT_EQ(owned.use_count(), 1);
    bool ran = false;
    asio::post(serial, [&ran] { ran = true; });
    background->runAll();
    EXPECT_TRUE(ran);
}

TEST_F(RefusedWork, IsHeardOfByWhoeverPostsIt) {
    background->isFull = true;
    EXPECT_THROW(asio::post(executor, [] {}), std::runtime_error);
}

TEST_F(RefusedWork, OfAnEventIsDroppedAndItsOtherWaitersResume) {
    const AsyncEvent event;
    spawn(executor, waitFor(event, owned));
    background->runAll();
    phone.start(note(event, order, 1));
    EXPECT_THAT(whileFull([&] { event.set(); }), StartsWith(refusalLine));
    EXPECT_EQ(owned.use_count(), 1);
    phone.runUntilIdle();
    EXPECT_THAT(order, ElementsAre(1));
}

TEST_F(RefusedWork, OfAnEventThatIsSetOnExitIsDropped) {
    const AsyncEvent event;
    spawn(executor, waitFor(event, owned));
    background->runAll();
    EXPECT_THAT(whileFull([&] { const SetOnExit setOnExit(event); }), StartsWith(refusalLine));
    EXPECT_EQ(owned.use_count(), 1);
}

TEST_F(RefusedWork, OfATaskGroupIsDropped) {
    const TaskGroup group;
    auto ticket = group.enter();
    spawn(executor, waitUntilIdle(group, owned));
    background->runAll();
    EXPECT_EQ(owned.use_count(), 2);
    EXPECT_THAT(whileFull([&] { ticket.release(); }), StartsWith(refusalLine));
    EXPECT_EQ(owned.use_count(), 1);
}

TEST_F(RefusedWork, OfAMutexIsDroppedAndTheLockPassesOn) {
    const AsyncMutex mutex;
    const AsyncEvent first;
    const AsyncEvent rest;
    rest.set();
    phone.start(hold(mutex, first, order, 1));
    spawn(executor, hold(mutex, rest, order, 2));
    background->runAll();
    phone.start(hold(mutex, rest, order, 3));
    first.set();
    EXPECT_THAT(whileFull([&] { phone.runUntilIdle(); }), StartsWith(refusalLine));
    EXPECT_THAT(order, ElementsAre(1, 3));
}

}  // namespace
}  // namespace mireth
