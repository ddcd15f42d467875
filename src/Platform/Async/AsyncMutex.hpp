// A lock that coroutines wait for. A waiter that its executor does not take is dropped with a line on
// standard error.
#pragma once

#include <memory>
#include <utility>

#include "Platform/Async/Task.hpp"

namespace mireth {

/// Lets one coroutine at a time pass, in the order in which they asked. Any thread.
class AsyncMutex {
  public:
    /// Held while alive. Dropping it lets the next one pass.
    class Lock {
      public:
        Lock() = default;
        Lock(Lock&&) noexcept = default;
        Lock& operator=(Lock&&) noexcept = delete;
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;
        ~Lock();

      private:
        friend class AsyncMutex;
        struct State;
        explicit Lock(std::shared_ptr<State> state) : state_(std::move(state)) {}
        std::shared_ptr<State> state_;
    };

    AsyncMutex();
    Task<Lock> lock() const;

  private:
    static Task<Lock> acquire(std::shared_ptr<Lock::State> state);
    std::shared_ptr<Lock::State> state_;
};

}  // namespace mireth
