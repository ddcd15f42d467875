// The list of operations in flight, oldest first.
#include "MirethVex/Headless/InFlight.hpp"

#include <utility>

namespace mireth::headless {

InFlight::InFlight(std::shared_ptr<WakeUp> wakeUp) : state_(std::make_shared<State>(std::move(wakeUp))) {}

InFlight::Operation InFlight::begin() {
    const std::lock_guard lock(state_->mutex);
    const std::uint64_t number = state_->next++;
    state_->entries.try_emplace(number);
    return {state_, number};
}

std::size_t InFlight::count() const {
    const std::lock_guard lock(state_->mutex);
    return state_->entries.size();
}

std::optional<Work> InFlight::takeOldestFinished() {
    const std::lock_guard lock(state_->mutex);
    const auto oldest = state_->entries.begin();
    if (oldest == state_->entries.end() || !oldest->second.finished) {
        return std::nullopt;
    }
    Work continuation = std::move(oldest->second.continuation);
    state_->entries.erase(oldest);
    return continuation;
}

void InFlight::clear() noexcept {
    std::map<std::uint64_t, Entry> dropped;
    {
        const std::lock_guard lock(state_->mutex);
        dropped.swap(state_->entries);
    }
    // Continuations own operations; they go outside the lock.
    dropped.clear();
    state_->wakeUp->raise();
}

InFlight::Operation& InFlight::Operation::operator=(Operation&& other) noexcept {
    if (this != &other) {
        end();
        state_ = std::exchange(other.state_, {});
        number_ = std::exchange(other.number_, 0);
    }
    return *this;
}

void InFlight::Operation::finish(Work continuation) {
    const auto state = state_.lock();
    if (!state) {
        return;
    }
    {
        const std::lock_guard lock(state->mutex);
        const auto entry = state->entries.find(number_);
        if (entry == state->entries.end()) {
            return;
        }
        entry->second.finished = true;
        std::swap(entry->second.continuation, continuation);
    }
    state->wakeUp->raise();
}

void InFlight::Operation::end() noexcept {
    const auto state = std::exchange(state_, {}).lock();
    if (!state) {
        return;
    }
    std::map<std::uint64_t, Entry>::node_type dropped;
    {
        const std::lock_guard lock(state->mutex);
        dropped = state->entries.extract(number_);
    }
    state->wakeUp->raise();
}

}  // namespace mireth::headless
