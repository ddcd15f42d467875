#include "PrivateSide/Logger/LoggerType.hpp"

#include <utility>

namespace mireth {

using platform::SystemLog;
using platform::SystemLogType;

StructuredLogger::StructuredLogger(std::shared_ptr<SystemLog> systemLog, std::string subsystem,
                                   std::string category)
    : systemLog_(std::move(systemLog)), subsystem_(std::move(subsystem)), category_(std::move(category)) {}

void StructuredLogger::info(std::string_view message) {
    systemLog_->writeStructured(subsystem_, category_, SystemLogType::info, message);
}

void StructuredLogger::error(std::string_view message) {
    systemLog_->writeStructured(subsystem_, category_, SystemLogType::error, message);
}

LegacyLogger::LegacyLogger(std::string subsystem, std::string category, Write logInfo, Write logError)
    : subsystem_(std::move(subsystem)),
      category_(std::move(category)),
      logInfo_(std::move(logInfo)),
      logError_(std::move(logError)) {}

LegacyLogger::LegacyLogger(const std::shared_ptr<SystemLog>& systemLog, std::string subsystem,
                           std::string category)
    : LegacyLogger(
          std::move(subsystem), std::move(category),
          [systemLog](std::string_view system, std::string_view area, std::string_view message) {
              systemLog->writeLegacy(system, area, SystemLogType::info, message);
          },
          [systemLog](std::string_view system, std::string_view area, std::string_view message) {
              systemLog->writeLegacy(system, area, SystemLogType::error, message);
          }) {}

void LegacyLogger::info(std::string_view message) {
    logInfo_(subsystem_, category_, message);
}

void LegacyLogger::error(std::string_view message) {
    logError_(subsystem_, category_, message);
}

}  // namespace mireth
