// The system log of a Linux device: the journal where it runs, else the plain system log.
#pragma once

#include <mutex>

#include "MirethVex/Platform/SystemLog.hpp"
#include "platforms/linux/system/SyslogSocket.hpp"

namespace mireth::platform {

/// A journal record carries MESSAGE, PRIORITY (6 info, 3 error), SYSLOG_IDENTIFIER (the subsystem) and
/// MIRETH_CATEGORY. A log whose reader has fallen behind loses lines; it does not hold up the caller.
class JournalSystemLog final : public SystemLog {
  public:
    /// The structured log is there when the journal's socket is.
    bool hasStructuredLog() const override;
    void writeStructured(std::string_view subsystem, std::string_view category, SystemLogType type,
                         std::string_view message) override;
    void writeLegacy(std::string_view subsystem, std::string_view category, SystemLogType type,
                     std::string_view message) override;

  private:
    const SyslogSocket syslog_{"/dev/log"};
    std::mutex journalMutex_;  // held from the look at the journal's queue to the record's sending
};

}  // namespace mireth::platform
