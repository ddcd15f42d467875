#include "Platform/Async/AsyncEvent.hpp"

#include "Platform/Async/Suspension.hpp"

namespace mireth {

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

}  // namespace mireth
