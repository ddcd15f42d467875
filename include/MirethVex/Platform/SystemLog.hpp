// The device's own log.
#pragma once

#include <string_view>

namespace mireth::platform {

enum class SystemLogType { info, error };

/// Any thread, also several at once. Writing never fails towards the caller and never blocks for long: a line
/// that cannot be written is dropped.
class SystemLog {
  public:
    virtual ~SystemLog() = default;
    /// True when the structured log (on Linux: the journal) can be written to; else `writeLegacy` has to do.
    /// Asked when the library is first used, and not again.
    virtual bool hasStructuredLog() const = 0;
    /// One record. `subsystem` is "M-VEX", `category` the key of a LogTag. `message` is data, never a format;
    /// it may hold any byte but is kept as one record.
    virtual void writeStructured(std::string_view subsystem, std::string_view category, SystemLogType type,
                                 std::string_view message) = 0;
    /// The same to the plain log (on Linux: syslog(3)).
    virtual void writeLegacy(std::string_view subsystem, std::string_view category, SystemLogType type,
                             std::string_view message) = 0;
};

}  // namespace mireth::platform
