// The device's own log.
#pragma once

#include <string_view>

namespace mireth::platform {

enum class SystemLogType { info, error };

/// Any thread. Writing never fails towards the caller and never blocks for long: a line that cannot be
/// written is dropped.
class SystemLog {
  public:
    virtual ~SystemLog() = default;
    /// True when the structured log (on Linux: the journal) can be written to; else `writeLegacy` has to do.
    virtual bool hasStructuredLog() const = 0;
    /// One record. `message` is data, never a format; it may hold any byte but is kept as one record.
    virtual void writeStructured(std::string_view subsystem, std::string_view category, SystemLogType type,
                                 std::string_view message) = 0;
    /// The same to the plain log (on Linux: syslog(3)).
    virtual void writeLegacy(std::string_view subsystem, std::string_view category, SystemLogType type,
                             std::string_view message) = 0;
};

}  // namespace mireth::platform
