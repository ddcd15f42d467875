// What was begun elsewhere and has not come back: requests on the network, work on a pool. Virtual time
// stands still while there is any, and the loop takes up results in the order in which the operations began.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

#include "MirethVex/Base/Work.hpp"
#include "MirethVex/Headless/WakeUp.hpp"

namespace mireth::headless {

/// Any thread.
class InFlight {
  private:
    struct State;

  public:
    /// One thing in flight. It counts from `begin` until it has ended; there is no moment in between at which
    /// neither the operation nor what follows from it is counted. Move-only; dropping it ends it.
    class Operation {
      public:
        Operation() = default;
        Operation(Operation&& other) noexcept = default;
        Operation& operator=(Operation&& other) noexcept;
        Operation(const Operation&) = delete;
        Operation& operator=(const Operation&) = delete;
        ~Operation() { end(); }

        /// The result is there: the loop runs `continuation` in the background once all earlier operations
        /// have ended. Until then the operation stays in flight. Does nothing after `end`.
        void finish(Work continuation);
        /// Ends it; a continuation not yet taken up is dropped. A second call does nothing.
        void end() noexcept;

      private:
        friend class InFlight;
        Operation(std::weak_ptr<State> state, std::uint64_t number)
            : state_(std::move(state)), number_(number) {}
        std::weak_ptr<State> state_;
        std::uint64_t number_ = 0;
    };

    explicit InFlight(std::shared_ptr<WakeUp> wakeUp);

    Operation begin();
    std::size_t count() const;

    /// The continuation of the oldest operation, which then is no longer in flight; nothing while that one
    /// is not finished. For the loop.
    std::optional<Work> takeOldestFinished();
    /// Ends everything; continuations are dropped.
    void clear() noexcept;

  private:
    struct Entry {
        bool finished = false;
        Work continuation;
    };
    struct State {
        explicit State(std::shared_ptr<WakeUp> signal) : wakeUp(std::move(signal)) {}
        const std::shared_ptr<WakeUp> wakeUp;

        std::mutex mutex;
        std::uint64_t next = 1;                  // guarded by mutex
        std::map<std::uint64_t, Entry> entries;  // guarded by mutex
    };
    std::shared_ptr<State> state_;
};

}  // namespace mireth::headless
