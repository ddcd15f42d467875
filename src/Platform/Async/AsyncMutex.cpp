#include "Platform/Async/AsyncMutex.hpp"

#include <deque>
#include <mutex>
#include <optional>

#include "Platform/Async/Suspension.hpp"

namespace mireth {

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
