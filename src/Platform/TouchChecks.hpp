// What a touch must say of itself before anybody is told of it.
#pragma once

#include <cmath>

#include "MirethVex/Platform/Touch.hpp"

namespace mireth::platform {

/// A time whose milliseconds fit 64 bits, and a place that is still one as pixels of 32 bits. What else a
/// toolkit says is a mistake that later stages have no answer to.
inline bool hasTimeAndPlace(const Touch& touch) {
    constexpr double longest = 9.2e15;  // seconds
    constexpr double farthest = 1e9;    // points
    return std::abs(touch.timestamp) <= longest && std::abs(touch.locationInWindow.x) <= farthest &&
           std::abs(touch.locationInWindow.y) <= farthest;
}

}  // namespace mireth::platform
