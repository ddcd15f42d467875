// Where and when a touch ended.
#pragma once

#include <cstdint>

#include "PrivateSide/Collection/Timeline/EventData.hpp"

namespace mireth {

struct TouchData {
    /// Window points.
    double x = 0;
    double y = 0;
    /// Milliseconds: on the uptime clock as the recogniser makes it.
    std::int64_t eventTime = 0;
    bool operator==(const TouchData&) const = default;

    /// The point as the timeline carries it.
    Target target() const noexcept { return {static_cast<float>(x), static_cast<float>(y)}; }
};

}  // namespace mireth
