#include "PrivateSide/Recording/DevicePerformanceEvaluator.hpp"

namespace mireth {

PerformanceCategory DevicePerformanceEvaluator::getPerformanceCategory() const {
    const std::uint64_t mebibytes = ramSize_ >> 20U;
    if (mebibytes < 3000) {
        return PerformanceCategory::slow;
    }
    return mebibytes < 6000 ? PerformanceCategory::average : PerformanceCategory::fast;
}

}  // namespace mireth
