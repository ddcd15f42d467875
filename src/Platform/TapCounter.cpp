// When a tap goes on with a run of taps.
#include "MirethVex/Platform/TapCounter.hpp"

#include <cmath>

namespace mireth::platform {

namespace {

/// Whole microseconds: the difference of two times in seconds is off by less than that, and a touch at
/// exactly the interval must not pass for an earlier one.
double microseconds(double seconds) {
    return std::round(seconds * 1e6);
}

}  // namespace

int TapCounter::countOf(Point location, double timestamp) const {
    if (!last_) {
        return 1;
    }
    const bool isSoon = microseconds(timestamp - last_->timestamp) < microseconds(interval_);
    const bool isNear =
        std::hypot(location.x - last_->location.x, location.y - last_->location.y) <= distance_;
    return isSoon && isNear ? last_->tapCount + 1 : 1;
}

void TapCounter::touchEnded(const Touch& touch) {
    last_ = Ended{touch.locationInWindow, touch.timestamp, touch.tapCount};
}

}  // namespace mireth::platform
