// Tells slow devices from fast ones by their memory; how long a dead tap is waited for depends on it.
#pragma once

#include <cstdint>

#include "MirethVex/Platform/Device.hpp"

namespace mireth {

enum class PerformanceCategory { slow, average, fast };

/// Any thread.
class DevicePerformanceEvaluator {
  public:
    /// `ramSize` in bytes.
    explicit DevicePerformanceEvaluator(std::uint64_t ramSize) : ramSize_(ramSize) {}
    /// Takes the device's physical memory.
    explicit DevicePerformanceEvaluator(const platform::Device& device)
        : DevicePerformanceEvaluator(device.physicalMemory()) {}

    /// By whole mebibytes: below 3000 slow, below 6000 average, else fast.
    PerformanceCategory getPerformanceCategory() const;

  private:
    std::uint64_t ramSize_;
};

}  // namespace mireth
