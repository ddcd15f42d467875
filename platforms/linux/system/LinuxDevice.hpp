// What a Linux device says of itself.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "MirethVex/Platform/Device.hpp"

namespace mireth::platform {

struct LinuxDeviceOptions {
    /// The directory that stands for "/" when files are read.
    std::filesystem::path root = "/";
    /// The idiom, when the host knows better. Nothing else makes a device a television, which no chassis
    /// name of machine-info(5) stands for.
    std::optional<UserInterfaceIdiom> idiom;
    /// Whose identifier `identifierForVendor` is: other vendors get another one.
    std::string vendor = "MirethVex";
};

/// Everything is read once, at construction. Where it comes from, the first source that knows counting:
/// - idiom: CHASSIS in /etc/machine-info, the device tree's chassis-type, the DMI chassis type (SMBIOS 3.6,
///   7.4.1);
/// - model: the device tree's model, the DMI product name;
/// - name: PRETTY_HOSTNAME in /etc/machine-info, the host name;
/// - system version: VERSION_ID in /etc/os-release or /usr/lib/os-release;
/// - vendor identifier: SHA-256 over machine-id and vendor, so that the machine-id, which machine-id(5) asks
///   to keep confidential, cannot be read from it.
class LinuxDevice final : public Device {
  public:
    explicit LinuxDevice(const LinuxDeviceOptions& options = {});

    UserInterfaceIdiom userInterfaceIdiom() const override { return idiom_; }
    std::string model() const override { return model_; }
    std::string name() const override { return name_; }
    std::string systemVersion() const override { return systemVersion_; }
    std::string machine() const override { return machine_; }
    std::optional<std::string> identifierForVendor() const override { return identifierForVendor_; }
    std::uint64_t physicalMemory() const override { return physicalMemory_; }

  private:
    UserInterfaceIdiom idiom_;
    std::string model_;
    std::string name_;
    std::string systemVersion_;
    std::string machine_;
    std::optional<std::string> identifierForVendor_;
    std::uint64_t physicalMemory_;
};

}  // namespace mireth::platform
