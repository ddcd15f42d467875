// Wakes a loop that sleeps until something happens. The virtual main queue sleeps on it; whatever hands the
// queue something from another thread raises it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>

namespace mireth::headless {

/// Counts what happened, so that nothing between a look and the sleep after it is missed. Any thread.
class WakeUp {
  public:
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;

    void raise();
    /// How often it was raised. Look at it first, then for work, then sleep with the value seen.
    std::uint64_t count() const;
    /// Returns once the count is no longer `seen`, or the deadline has passed.
    void waitUnless(std::uint64_t seen, Deadline deadline = std::nullopt) const;

  private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::uint64_t count_ = 0;  // guarded by mutex_
};

}  // namespace mireth::headless
