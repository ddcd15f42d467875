#include "Platform/Async/TaskGroup.hpp"

#include <cstddef>
#include <mutex>
#include <vector>

#include "Platform/Async/Suspension.hpp"

namespace mireth {

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

}  // namespace mireth
