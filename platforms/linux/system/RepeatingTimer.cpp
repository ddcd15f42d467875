#include "platforms/linux/system/RepeatingTimer.hpp"

#include <utility>

namespace mireth::platform {

RepeatingTimer::RepeatingTimer(boost::asio::io_context& context, Seconds interval, Work tick,
                               EscapedErrorHandler onEscapedError)
    : timer_(context), phase_(interval), onEscapedError_(std::move(onEscapedError)), tick_(std::move(tick)) {}

void RepeatingTimer::start() {
    phase_.start(PhaseClock::SteadyClock::now());
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
    timer_.expires_at(phase_.due());
    timer_.async_wait([self = shared_from_this()](const boost::system::error_code& error) {
        if (!error && self->active_) {
            self->fire();
        }
    });
}

void RepeatingTimer::fire() {
    ticking_ = true;
    if (tick_) {
        runGuarded("a timer on the main queue", tick_, onEscapedError_);
    }
    ticking_ = false;
    if (!active_) {
        return;
    }
    phase_.next(PhaseClock::SteadyClock::now());
    waitForNextTick();
}

void RepeatingTimerToken::cancel() {
    if (const auto timer = timer_.lock()) {
        timer->invalidate();
        timer_.reset();
    }
}

}  // namespace mireth::platform
