// How long a device is given to react to a tap.
#pragma once

#include "MirethVex/Platform/MainQueue.hpp"
#include "PrivateSide/Recording/DevicePerformanceEvaluator.hpp"

namespace mireth {

class TimeoutEvaluator {
  public:
    struct Timeout {
        static constexpr platform::Seconds longPeriod{2.0};
        static constexpr platform::Seconds averagePeriod{1.5};
        static constexpr platform::Seconds shortPeriod{1.0};
    };

    explicit TimeoutEvaluator(DevicePerformanceEvaluator devicePerformanceEvaluator)
        : devicePerformanceEvaluator_(devicePerformanceEvaluator) {}

    /// The long period for a slow device, the short one for a fast device.
    platform::Seconds determineTimeoutPeriod() const;

  private:
    DevicePerformanceEvaluator devicePerformanceEvaluator_;
};

}  // namespace mireth
