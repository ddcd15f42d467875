// Things that coroutines wait for: a one-time event, a group of tasks, a lock. A waiter that its executor
// does not take is dropped with a line on standard error.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
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

/// Counts tasks in flight. A task holds a ticket from when it is handed over until it is done; `idle` waits
/// until no ticket is left. Any thread.
class TaskGroup {
  public:
    class Ticket {
      public:
        Ticket() = default;
        Ticket(Ticket&&) noexcept = default;
        Ticket& operator=(Ticket&& other) noexcept;
        Ticket(const Ticket&) = delete;
        Ticket& operator=(const Ticket&) = delete;
        ~Ticket() { release(); }
        void release() noexcept;

      private:
        friend class TaskGroup;
        struct State;
        explicit Ticket(std::shared_ptr<State> state) : state_(std::move(state)) {}
        std::shared_ptr<State> state_;
    };

    TaskGroup();
    Ticket enter() const;
    /// Completes at once when nothing is in flight. Tickets taken while it waits are waited for too.
    Task<void> idle() const;

  private:
    static Task<void> waitUntilIdle(std::shared_ptr<Ticket::State> state);
    std::shared_ptr<Ticket::State> state_;
};

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
