// The two clocks of a device. They are different clocks: the wall clock can be set, the uptime clock not.
#pragma once

#include "MirethVex/Base/Date.hpp"

namespace mireth::platform {

/// Any thread. Never fails.
class Clock {
  public:
    virtual ~Clock() = default;
    /// The wall clock.
    virtual Date now() const = 0;
    /// Seconds since the device started, counted through sleep; never goes back.
    virtual double uptimeSeconds() const = 0;
};

}  // namespace mireth::platform
