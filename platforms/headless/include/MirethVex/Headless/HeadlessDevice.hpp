// A device that is what the script says it is.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "MirethVex/Platform/Device.hpp"

namespace mireth::headless {

struct DeviceValues {
    platform::UserInterfaceIdiom idiom = platform::UserInterfaceIdiom::phone;
    std::string model = "Phone";
    std::string name = "Test phone";
    std::string systemVersion = "17.4";
    std::string machine = "phone14,2";
    std::optional<std::string> identifierForVendor = "6F9619FF-8B86-D011-B42D-00C04FC964FF";
    /// In bytes.
    std::uint64_t physicalMemory = std::uint64_t{4096} << 20U;
};

/// Constant; any thread.
class HeadlessDevice final : public platform::Device {
  public:
    explicit HeadlessDevice(DeviceValues values = {}) : values_(std::move(values)) {}

    platform::UserInterfaceIdiom userInterfaceIdiom() const override { return values_.idiom; }
    std::string model() const override { return values_.model; }
    std::string name() const override { return values_.name; }
    std::string systemVersion() const override { return values_.systemVersion; }
    std::string machine() const override { return values_.machine; }
    std::optional<std::string> identifierForVendor() const override { return values_.identifierForVendor; }
    std::uint64_t physicalMemory() const override { return values_.physicalMemory; }

  private:
    const DeviceValues values_;
};

}  // namespace mireth::headless
