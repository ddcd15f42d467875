// When the ticks of a repeating timer are due; the timers of every platform that follows the steady clock
// count by it.
#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>

#include "MirethVex/Platform/MainQueue.hpp"

namespace mireth::platform {

/// `seconds` as a duration of the steady clock, cut to 0 … 100 years; no number counts as 0.
inline std::chrono::steady_clock::duration clampedDuration(Seconds seconds) {
    constexpr double longest = 100.0 * 365 * 24 * 3600;
    const double count = std::isnan(seconds.count()) ? 0 : std::clamp(seconds.count(), 0.0, longest);
    return std::chrono::duration_cast<std::chrono::steady_clock::duration>(Seconds(count));
}

/// Keeps the phase: tick n is due n intervals after the start, however late tick n − 1 ran. Ticks that were
/// missed are left out. An interval below one millisecond, or one that is no number, counts as one
/// millisecond.
class PhaseClock {
  public:
    using SteadyClock = std::chrono::steady_clock;

    explicit PhaseClock(Seconds interval)
        : interval_(
              std::max<SteadyClock::duration>(clampedDuration(interval), std::chrono::milliseconds(1))) {}

    /// The first tick is due an interval after `now`.
    void start(SteadyClock::time_point now) { due_ = now + interval_; }

    SteadyClock::time_point due() const noexcept { return due_; }

    /// After a tick: the next one is that which is not yet due at `now`.
    void next(SteadyClock::time_point now) {
        const auto missed = std::max<SteadyClock::rep>((now - due_) / interval_, 0);
        due_ += (missed + 1) * interval_;
    }

  private:
    const SteadyClock::duration interval_;
    SteadyClock::time_point due_;
};

}  // namespace mireth::platform
