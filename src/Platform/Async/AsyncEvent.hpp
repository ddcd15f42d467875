// A one-time event that coroutines wait for. A waiter that its executor does not take is dropped with a line
// on standard error.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "MirethVex/Base/Work.hpp"
#include "Platform/Async/Task.hpp"

namespace mireth {

/// Happens once. Copies share the event. Any thread may set it and wait for it; a waiter resumes on its own
/// executor.
class AsyncEvent {
  public:
    void set() const noexcept;
    bool isSet() const;
    Task<void> wait() const;

  private:
    struct State {
        std::mutex mutex;
        bool set = false;           // guarded by mutex
        std::vector<Work> waiters;  // guarded by mutex
    };
    static Task<void> waitFor(std::shared_ptr<State> state);
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace mireth
