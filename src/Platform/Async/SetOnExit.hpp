// Tells those who wait for a task that it is over.
#pragma once

#include <optional>
#include <utility>

#include "Platform/Async/AsyncEvent.hpp"

namespace mireth {

/// Sets an event when it goes, so that whoever waits for a task goes on however the task ended, also when it
/// was dropped before it began.
class SetOnExit {
  public:
    explicit SetOnExit(AsyncEvent event) : event_(std::move(event)) {}
    SetOnExit(SetOnExit&& other) noexcept : event_(std::exchange(other.event_, std::nullopt)) {}
    SetOnExit& operator=(SetOnExit&&) = delete;
    SetOnExit(const SetOnExit&) = delete;
    SetOnExit& operator=(const SetOnExit&) = delete;
    ~SetOnExit() {
        if (event_) {
            event_->set();
        }
    }

  private:
    std::optional<AsyncEvent> event_;
};

}  // namespace mireth
