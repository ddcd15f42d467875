// A sink of the system log, and the two kinds there are.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "MirethVex/Platform/SystemLog.hpp"

namespace mireth {

/// Writes the lines of one category. Any thread.
class LoggerType {
  public:
    virtual ~LoggerType() = default;
    virtual void info(std::string_view message) = 0;
    virtual void error(std::string_view message) = 0;
};

/// Writes to the platform's structured log.
class StructuredLogger final : public LoggerType {
  public:
    StructuredLogger(std::shared_ptr<platform::SystemLog> systemLog, std::string subsystem,
                     std::string category);
    void info(std::string_view message) override;
    void error(std::string_view message) override;

  private:
    const std::shared_ptr<platform::SystemLog> systemLog_;
    const std::string subsystem_;
    const std::string category_;
};

/// Stands in where there is no structured log.
class LegacyLogger final : public LoggerType {
  public:
    /// Takes subsystem, category and message.
    using Write = std::function<void(std::string_view, std::string_view, std::string_view)>;

    /// Writes through the given callables.
    LegacyLogger(std::string subsystem, std::string category, Write logInfo, Write logError);
    /// Writes to the platform's plain log.
    LegacyLogger(const std::shared_ptr<platform::SystemLog>& systemLog, std::string subsystem,
                 std::string category);
    void info(std::string_view message) override;
    void error(std::string_view message) override;

  private:
    const std::string subsystem_;
    const std::string category_;
    const Write logInfo_;
    const Write logError_;
};

}  // namespace mireth
