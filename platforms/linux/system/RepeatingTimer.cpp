#include "platforms/linux/system/RepeatingTimer.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace mireth::platform {

using SteadyClock = std::chrono::steady_clock;

SteadyClock::duration clampedDuration(Seconds seconds) {
    constexpr double longest = 100.0 * 365 * 24 * 3600;
    const double count = std::isnan(seconds.count()) ? 0 : std::clamp(seconds.count(), 0.0, longest);
    return std::chrono::duration_cast<SteadyClock::duration>(Seconds(count));
}

RepeatingTimer::RepeatingTimer(boost::asio::io_context& context, Seconds interval, Work tick,
                               EscapedErrorHandler onEscapedError)
    : timer_(context),
      interval_(std::max<SteadyClock::duration>(clampedDuration(interval), std::chrono::milliseconds(1))),
      onEscapedError_(std::move(onEscapedError)),
      tick_(std::move(tick)) {}

void RepeatingTimer::start() {
    due_ = SteadyClock::now() + interval_;
    waitForNextTick();
}

void RepeatingTimer::invalidate() {
    active_ = false;
    timer_.cancel();
    if (!ticking_) {
        // What the tick owns is released now, not when the loop comes round to the cancelled wait. A tick
        // that invalidates its own timer must not be destroyed while it runs.
        tick_ = nullptr;
    }
}

void RepeatingTimer::waitForNextTick() {
    timer_.expires_at(due_);
    timer_.async_wait([self = shared_from_this()](const boost::system::error_code& error) {
        if (!error && self->active_) {
            self->fire();
        }
    });
}

void RepeatingTimer::fire() {
    ticking_ = true;
    if (tick_) {
        runGuarded(tick_, "a timer on the main queue", onEscapedError_);
    }
    ticking_ = false;
    if (!active_) {
        return;
    }
    const auto missed = (SteadyClock::now() - due_) / interval_;
    due_ += (missed + 1) * interval_;
    waitForNextTick();
}

void RepeatingTimerToken::cancel() {
    if (const auto timer = timer_.lock()) {
        timer->invalidate();
        timer_.reset();
    }
}

}  // namespace mireth::platform
