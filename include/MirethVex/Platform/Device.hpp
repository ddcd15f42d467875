// What the library runs on.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace mireth::platform {

enum class UserInterfaceIdiom { phone, pad, desktop, television, unspecified };

/// Any thread. Answers stay the same for the life of the process. Texts are UTF-8 and empty when unknown.
/// What is said to be sent goes to the service with every session.
class Device {
  public:
    virtual ~Device() = default;
    /// Only a `phone` is recorded. Not sent.
    virtual UserInterfaceIdiom userInterfaceIdiom() const = 0;
    /// The kind of device in words, such as "Phone". Sent.
    virtual std::string model() const = 0;
    /// What its owner calls it. Sent with the error lines that are posted.
    virtual std::string name() const = 0;
    /// The operating system's version, such as "17.4". Sent with every request.
    virtual std::string systemVersion() const = 0;
    /// The hardware identifier as the kernel reports it in the `machine` field of uname(2). Sent, with the
    /// error lines too.
    virtual std::string machine() const = 0;
    /// An identifier that is stable for this device and the app's vendor, in UUID form with upper-case
    /// digits; nothing when the device has none to give. Sent.
    virtual std::optional<std::string> identifierForVendor() const = 0;
    /// Physical memory in bytes. Not sent; the less there is, the longer a tap may take to show an effect.
    virtual std::uint64_t physicalMemory() const = 0;
};

}  // namespace mireth::platform
