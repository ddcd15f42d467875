#include "PrivateSide/Logger/OSLoggers.hpp"

#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

OSLoggers::OSLoggers(const MakeLogger& makeLogger) {
    for (const LogTag logTag : allLogTags) {
        loggers_[logTag] = makeLogger(MirethLog::tag, key(logTag));
    }
}

LoggerType* OSLoggers::get(LogTag tag) const {
    const auto found = loggers_.find(tag);
    return found == loggers_.end() ? nullptr : found->second.get();
}

void OSLoggers::info(LogTag tag, std::string_view line) const {
    if (auto* logger = get(tag)) {
        logger->info(line);
    }
}

void OSLoggers::error(LogTag tag, std::string_view line) const {
    if (auto* logger = get(tag)) {
        logger->error(line);
    }
}

}  // namespace mireth
