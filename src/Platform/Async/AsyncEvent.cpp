#include "Platform/Async/AsyncEvent.hpp"

#include <boost/asio/associated_executor.hpp>
#include <boost/asio/async_result.hpp>
#include <optional>

#include "Base/GuardedRun.hpp"
#include "Platform/Async/DroppingScope.hpp"

namespace mireth {

namespace {

using Token = asio::use_awaitable_t<Executor>;

/// Suspends the calling coroutine and hands `arrange` the work that resumes it on its executor. The work may
/// run on any thread, also before `arrange` returns.
template <class Arrange>
Task<void> suspend(Arrange arrange) {
    // Named: see Task.hpp.
    auto initiate = [arrange = std::move(arrange)](auto handler) mutable {
        auto executor = asio::get_associated_executor(handler);
        arrange(Work([executor, handler = std::move(handler)]() mutable {
            asio::post(executor, [handler = std::move(handler)]() mutable { std::move(handler)(); });
        }));
    };
    Token token;
    co_await asio::async_initiate<Token, void()>(std::move(initiate), token);
}

/// Where nothing may be thrown, as in destructors: a waiter that its executor does not take is dropped with a
/// line on standard error, and its coroutine with it.
void resumeOrDrop(Work& waiter) noexcept {
    const DroppingScope dropping;
    runGuarded("an executor", waiter);
    waiter = nullptr;
}

}  // namespace

// AsyncEvent

void AsyncEvent::set() const noexcept {
    std::vector<Work> waiters;
    {
        const std::lock_guard lock(state_->mutex);
        state_->set = true;
        waiters.swap(state_->waiters);
    }
    for (auto& waiter : waiters) {
        resumeOrDrop(waiter);
    }
}

bool AsyncEvent::isSet() const {
    const std::lock_guard lock(state_->mutex);
    return state_->set;
}

Task<void> AsyncEvent::wait() const {
    return waitFor(state_);
}

Task<void> AsyncEvent::waitFor(std::shared_ptr<State> state) {
    auto arrange = [state](Work resume) {
        {
            const std::lock_guard lock(state->mutex);
            if (!state->set) {
                state->waiters.push_back(std::move(resume));
                return;
            }
        }
        resume();
    };
    co_await suspend(std::move(arrange));
}

// TaskGroup

struct TaskGroup::Ticket::State {
    std::mutex mutex;
    std::size_t count = 0;      // guarded by mutex
    std::vector<Work> waiters;  // guarded by mutex
};

TaskGroup::Ticket& TaskGroup::Ticket::operator=(Ticket&& other) noexcept {
    if (this != &other) {
        release();
        state_ = std::move(other.state_);
    }
    return *this;
}

void TaskGroup::Ticket::release() noexcept {
    const auto state = std::move(state_);
    if (!state) {
        return;
    }
    std::vector<Work> waiters;
    {
        const std::lock_guard lock(state->mutex);
        if (--state->count > 0) {
            return;
        }
        waiters.swap(state->waiters);
    }
    for (auto& waiter : waiters) {
        resumeOrDrop(waiter);
    }
}

TaskGroup::TaskGroup() : state_(std::make_shared<Ticket::State>()) {}

TaskGroup::Ticket TaskGroup::enter() const {
    {
        const std::lock_guard lock(state_->mutex);
        ++state_->count;
    }
    return Ticket(state_);
}

Task<void> TaskGroup::idle() const {
    return waitUntilIdle(state_);
}

Task<void> TaskGroup::waitUntilIdle(std::shared_ptr<Ticket::State> state) {
    for (;;) {
        {
            const std::lock_guard lock(state->mutex);
            if (state->count == 0) {
                co_return;
            }
        }
        auto arrange = [state](Work resume) {
            {
                const std::lock_guard lock(state->mutex);
                if (state->count > 0) {
                    state->waiters.push_back(std::move(resume));
                    return;
                }
            }
            resume();
        };
        co_await suspend(std::move(arrange));
    }
}

// AsyncMutex

struct AsyncMutex::Lock::State {
    /// Who waits. The lock travels in the slot, which the waiting coroutine owns too: when the coroutine is
    /// dropped instead of resumed, the slot goes with it and the lock passes on.
    struct Waiter {
        Work resume;
        std::shared_ptr<std::optional<Lock>> slot;
    };

    std::mutex mutex;
    bool held = false;           // guarded by mutex
    std::deque<Waiter> waiters;  // guarded by mutex
};

AsyncMutex::Lock::~Lock() {
    const auto state = std::move(state_);
    if (!state) {
        return;
    }
    State::Waiter next;
    {
        const std::lock_guard lock(state->mutex);
        if (state->waiters.empty()) {
            state->held = false;
            return;
        }
        // The lock stays held and goes to the next in line, so that nobody can step in between.
        next = std::move(state->waiters.front());
        state->waiters.pop_front();
    }
    next.slot->emplace(Lock(state));
    next.slot.reset();
    resumeOrDrop(next.resume);
}

AsyncMutex::AsyncMutex() : state_(std::make_shared<Lock::State>()) {}

Task<AsyncMutex::Lock> AsyncMutex::lock() const {
    return acquire(state_);
}

Task<AsyncMutex::Lock> AsyncMutex::acquire(std::shared_ptr<Lock::State> state) {
    const auto slot = std::make_shared<std::optional<Lock>>();
    bool mustWait = false;
    {
        const std::lock_guard lock(state->mutex);
        mustWait = std::exchange(state->held, true);
    }
    if (!mustWait) {
        co_return Lock(state);
    }
    auto arrange = [state, slot](Work resume) {
        {
            const std::lock_guard lock(state->mutex);
            if (state->held) {
                state->waiters.push_back({std::move(resume), slot});
                return;
            }
            state->held = true;
        }
        slot->emplace(Lock(state));
        resume();
    };
    co_await suspend(std::move(arrange));
    co_return std::move(**slot);
}

}  // namespace mireth
