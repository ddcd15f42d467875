#include "PrivateSide/Logger/MirethLog.hpp"

#include <utility>

#include "Base/GuardedRun.hpp"
#include "PrivateSide/Logger/LogOutletScope.hpp"

namespace mireth {

namespace {

std::string lineText(const std::string& message, const AdditionalInfo& additionalInfo) {
    return additionalInfo.empty() ? message : message + " " + describe(additionalInfo);
}

constexpr unsigned bit(LogTag tag) noexcept {
    return 1U << static_cast<unsigned>(tag);
}

OSLoggers::MakeLogger sinksOf(const std::shared_ptr<platform::SystemLog>& systemLog) {
    return [systemLog](std::string_view subsystem, std::string_view category) -> std::unique_ptr<LoggerType> {
        if (systemLog->hasStructuredLog()) {
            return std::make_unique<StructuredLogger>(systemLog, std::string(subsystem),
                                                      std::string(category));
        }
        return std::make_unique<LegacyLogger>(systemLog, std::string(subsystem), std::string(category));
    };
}

/// The system log may be the host's own. What it throws costs neither the listeners nor the remote log the
/// line, and what it logs itself does not come back to it.
template <class Write>
void tellSystemLog(const Write& write) {
    if (LogOutletScope::current() == LogOutlet::systemLog) {
        return;
    }
    const LogOutletScope scope(LogOutlet::systemLog);
    runGuarded("the system log", write);
}

}  // namespace

std::string_view debugInfo(MemoryUseStatus status) noexcept {
    return status == MemoryUseStatus::initialized ? "Succesfully initialized" : "Succesfully deinitialized";
}

MirethLog::MirethLog(const OSLoggers::MakeLogger& makeLogger) : osLoggers_(makeLogger) {}

MirethLog::MirethLog(const std::shared_ptr<platform::SystemLog>& systemLog) : MirethLog(sinksOf(systemLog)) {}

void MirethLog::info(LogTag logTag, const std::string& message, const AdditionalInfo& additionalInfo) {
    if (!isAllowed(logTag)) {
        return;
    }
    const std::string line = lineText(message, additionalInfo);
    tellSystemLog([&] { osLoggers_.info(logTag, line); });
    logListeners_.logToAll(logTag, LogLevel::info, line);
}

void MirethLog::error(LogTag logTag, const std::string& message, const AdditionalInfo& additionalInfo,
                      bool postMessage) {
    writeError(logTag, message, additionalInfo);
    if (!postMessage || LogOutletScope::current() != LogOutlet::none) {
        return;
    }
    std::shared_ptr<RemoteLogPoster> poster;
    {
        const std::lock_guard lock(posterMutex_);
        poster = remotePoster_.lock();
    }
    if (poster) {
        poster->post(LogLevel::error, logTag, message, additionalInfo, false);
    }
}

void MirethLog::objectInit(MemoryUseStatus status, std::string_view file) {
    if (!isAllowed(LogTag::memoryUse)) {
        return;
    }
    const std::string_view last = file.substr(file.rfind('/') + 1);
    const std::string_view name = last.substr(0, last.find('.'));
    info(LogTag::memoryUse, std::string(name) + ": " + std::string(debugInfo(status)));
}

void MirethLog::logWithRemoteLogger(RemoteLogPoster& remoteLogger, LogTag logTag, const std::string& message,
                                    bool postMessage) {
    writeError(logTag, message, {});
    if (postMessage && LogOutletScope::current() == LogOutlet::none) {
        remoteLogger.post(LogLevel::error, logTag, message, {}, false);
    }
}

void MirethLog::addLogListener(MirethLogListeners::Listener listener) {
    logListeners_.add(std::move(listener));
}

std::set<LogTag> MirethLog::allowedTags() const {
    std::set<LogTag> tags;
    for (const LogTag logTag : allLogTags) {
        if (isAllowed(logTag)) {
            tags.insert(logTag);
        }
    }
    return tags;
}

void MirethLog::setAllowedTags(const std::set<LogTag>& tags) {
    unsigned bits = 0;
    for (const LogTag logTag : tags) {
        bits |= bit(logTag);
    }
    allowedTags_.store(bits, std::memory_order_relaxed);
}

void MirethLog::reset() {
    setAllowedTags({});
}

void MirethLog::setRemotePoster(std::weak_ptr<RemoteLogPoster> poster) {
    const std::lock_guard lock(posterMutex_);
    remotePoster_ = std::move(poster);
}

bool MirethLog::isAllowed(LogTag logTag) const noexcept {
    return (allowedTags_.load(std::memory_order_relaxed) & bit(logTag)) != 0;
}

void MirethLog::writeError(LogTag logTag, const std::string& message, const AdditionalInfo& additionalInfo) {
    const std::string line = lineText(message, additionalInfo);
    tellSystemLog([&] { osLoggers_.error(logTag, line); });
    logListeners_.logToAll(logTag, LogLevel::error, line);
}

}  // namespace mireth
