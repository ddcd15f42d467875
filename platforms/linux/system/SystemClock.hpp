// The clocks of a Linux device.
#pragma once

#include "MirethVex/Platform/Clock.hpp"

namespace mireth::platform {

/// The wall clock is CLOCK_REALTIME; uptime is CLOCK_BOOTTIME, which counts through suspend.
class SystemClock final : public Clock {
  public:
    Date now() const override;
    double uptimeSeconds() const override;
};

}  // namespace mireth::platform
