// What the library runs on.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace mireth::platform {

enum class UserInterfaceIdiom { phone, pad, desktop, television, unspecified };

/// Any thread. Answers stay the same for the life of the process. Texts are UTF-8 and empty when unknown.
class Device {
  public:
    virtual ~Device() = default;
    virtual UserInterfaceIdiom userInterfaceIdiom() const = 0;
    /// The kind of device in words, such as "Phone".
    virtual std::string model() const = 0;
    /// What its owner calls it.
    virtual std::string name() const = 0;
    /// The operating system's version, such as "17.4".
    virtual std::string systemVersion() const = 0;
    /// The hardware identifier as the kernel reports it in the `machine` field of uname(2).
    virtual std::string machine() const = 0;
    /// An identifier that is stable for this device and the app's vendor, in UUID form; nothing when the
    /// device has none to give.
    virtual std::optional<std::string> identifierForVendor() const = 0;
    /// Physical memory in bytes.
    virtual std::uint64_t physicalMemory() const = 0;
};

}  // namespace mireth::platform
