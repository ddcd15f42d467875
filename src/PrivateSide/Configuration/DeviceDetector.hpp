// Which kind of device this is, and whether sessions are recorded on it.
#pragma once

#include <memory>
#include <string_view>

#include "MirethVex/Platform/Device.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

enum class DeviceType { phone, other };

/// "phone" or "other".
std::string_view rawValue(DeviceType type) noexcept;

/// Any thread.
class DeviceDetector {
  public:
    DeviceDetector(MirethLog& log, std::shared_ptr<platform::Device> device);
    /// `phone` for the phone idiom, `other` for every other one.
    DeviceType detectDevice() const;

  private:
    const std::shared_ptr<platform::Device> device_;
    const MemoryUseLines memoryUse_;
};

/// True for phones. Any other type is logged as an error: only phones are recorded.
bool isDeviceTypeSupported(MirethLog& log, DeviceType deviceType);

}  // namespace mireth
