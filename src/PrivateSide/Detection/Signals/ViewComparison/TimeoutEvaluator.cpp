#include "PrivateSide/Detection/Signals/ViewComparison/TimeoutEvaluator.hpp"

namespace mireth {

platform::Seconds TimeoutEvaluator::determineTimeoutPeriod() const {
    switch (devicePerformanceEvaluator_.getPerformanceCategory()) {
        case PerformanceCategory::slow:
            return Timeout::longPeriod;
        case PerformanceCategory::average:
            return Timeout::averagePeriod;
        case PerformanceCategory::fast:
            return Timeout::shortPeriod;
    }
    return Timeout::longPeriod;
}

}  // namespace mireth
