// Chance from the kernel.
#pragma once

#include "MirethVex/Platform/RandomSource.hpp"

namespace mireth::platform {

/// Every draw asks the kernel anew, so a forked process shares none with its parent.
class SystemRandomSource final : public RandomSource {
  public:
    double uniformReal(double low, double high) override;
    /// A bound of zero or less gives 0.
    std::int64_t uniformBelow(std::int64_t bound) override;
    std::string uuid() override;
};

}  // namespace mireth::platform
