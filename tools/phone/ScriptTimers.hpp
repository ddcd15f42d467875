// What a script sets for later: the ends of touches, further taps, delayed reactions.
#pragma once

#include <chrono>
#include <cstddef>
#include <exception>
#include <functional>

#include "MirethVex/Base/Work.hpp"
#include "MirethVex/Headless/VirtualMainQueue.hpp"

namespace mireth::phone {

/// Main thread only. It outlives the timers it sets.
class ScriptTimers {
  public:
    using Failure = std::function<void(std::exception_ptr)>;

    /// `onFailure` is given what a timer's work throws.
    ScriptTimers(headless::VirtualMainQueue& queue, Failure onFailure);
    ScriptTimers(const ScriptTimers&) = delete;
    ScriptTimers& operator=(const ScriptTimers&) = delete;

    void set(std::chrono::nanoseconds delay, Work work);
    /// How many have not run yet.
    std::size_t pending() const noexcept { return pending_; }
    /// When the last one ran.
    headless::VirtualMainQueue::Instant lastRun() const noexcept { return lastRun_; }

  private:
    void run(Work& work) noexcept;

    headless::VirtualMainQueue& queue_;
    const Failure onFailure_;
    std::size_t pending_ = 0;
    headless::VirtualMainQueue::Instant lastRun_{};
};

}  // namespace mireth::phone
