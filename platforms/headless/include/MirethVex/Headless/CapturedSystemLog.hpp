// A system log that keeps its records for a test to read.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "MirethVex/Platform/SystemLog.hpp"

namespace mireth::headless {

struct SystemLogRecord {
    bool isStructured = false;
    std::string subsystem;
    std::string category;
    platform::SystemLogType type = platform::SystemLogType::info;
    std::string message;
    bool operator==(const SystemLogRecord&) const = default;
};

/// Keeps the latest `capacity` records. Any thread.
class CapturedSystemLog final : public platform::SystemLog {
  public:
    explicit CapturedSystemLog(bool hasStructuredLog = true, std::size_t capacity = 100'000)
        : hasStructuredLog_(hasStructuredLog), capacity_(capacity) {}

    bool hasStructuredLog() const override { return hasStructuredLog_; }
    void writeStructured(std::string_view subsystem, std::string_view category, platform::SystemLogType type,
                         std::string_view message) override;
    void writeLegacy(std::string_view subsystem, std::string_view category, platform::SystemLogType type,
                     std::string_view message) override;

    /// The records so far, oldest first.
    std::vector<SystemLogRecord> records() const;
    /// The records so far, which are then forgotten.
    std::vector<SystemLogRecord> takeRecords();

  private:
    void add(SystemLogRecord record);

    const bool hasStructuredLog_;
    const std::size_t capacity_;
    mutable std::mutex mutex_;
    std::deque<SystemLogRecord> records_;  // guarded by mutex_
};

}  // namespace mireth::headless
