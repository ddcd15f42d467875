#include "PrivateSide/Configuration/DeviceDetector.hpp"

#include <string>
#include <utility>

namespace mireth {

std::string_view rawValue(DeviceType type) noexcept {
    return type == DeviceType::phone ? "phone" : "other";
}

DeviceDetector::DeviceDetector(MirethLog& log, std::shared_ptr<platform::Device> device)
    : device_(std::move(device)), memoryUse_(log, "PrivateSide/Configuration/DeviceDetector") {}

DeviceType DeviceDetector::detectDevice() const {
    return device_->userInterfaceIdiom() == platform::UserInterfaceIdiom::phone ? DeviceType::phone
                                                                                : DeviceType::other;
}

bool isDeviceTypeSupported(MirethLog& log, DeviceType deviceType) {
    if (deviceType == DeviceType::phone) {
        return true;
    }
    log.error(LogTag::lifecycle, "Device is not supported.",
              {{"deviceType", std::string(rawValue(deviceType))}});
    return false;
}

}  // namespace mireth
