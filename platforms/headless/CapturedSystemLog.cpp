// Records in a bounded list.
#include "MirethVex/Headless/CapturedSystemLog.hpp"

#include <utility>

namespace mireth::headless {

void CapturedSystemLog::writeStructured(std::string_view subsystem, std::string_view category,
                                        platform::SystemLogType type, std::string_view message) {
    add({true, std::string(subsystem), std::string(category), type, std::string(message)});
}

void CapturedSystemLog::writeLegacy(std::string_view subsystem, std::string_view category,
                                    platform::SystemLogType type, std::string_view message) {
    add({false, std::string(subsystem), std::string(category), type, std::string(message)});
}

std::vector<SystemLogRecord> CapturedSystemLog::records() const {
    const std::lock_guard lock(mutex_);
    return {records_.begin(), records_.end()};
}

std::vector<SystemLogRecord> CapturedSystemLog::takeRecords() {
    const std::lock_guard lock(mutex_);
    std::vector<SystemLogRecord> taken(std::move_iterator(records_.begin()),
                                       std::move_iterator(records_.end()));
    records_.clear();
    return taken;
}

void CapturedSystemLog::add(SystemLogRecord record) {
    const std::lock_guard lock(mutex_);
    records_.push_back(std::move(record));
    if (records_.size() > capacity_) {
        records_.pop_front();
    }
}

}  // namespace mireth::headless
