// A count of tasks in flight that coroutines wait for. A waiter that its executor does not take is dropped
// with a line on standard error.
#pragma once

#include <memory>
#include <utility>

#include "Platform/Async/Task.hpp"

namespace mireth {

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

}  // namespace mireth
