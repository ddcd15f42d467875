// The library's one logger: every part writes its diagnostics through it.
#pragma once

#include <atomic>
#include <concepts>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "MirethVex/Platform/SystemLog.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/LogTag.hpp"
#include "PrivateSide/Logger/AdditionalInfo.hpp"
#include "PrivateSide/Logger/MirethLogListeners.hpp"
#include "PrivateSide/Logger/OSLoggers.hpp"
#include "PrivateSide/Logger/RemoteLogPoster.hpp"

namespace mireth {

enum class MemoryUseStatus { initialized, deinitialized };

/// "Succesfully initialized" or "Succesfully deinitialized".
std::string_view debugInfo(MemoryUseStatus status) noexcept;

/// Writes a line to the system log, to the host's listeners and, for errors that ask for it, to the remote
/// log. Info lines are written only for allowed tags; error lines always. Any thread; nothing blocks.
///
/// A listener may log itself: such lines reach the system log, but neither a listener nor the remote log, so
/// that one which logs on every line cannot call itself without end, nor have each failed post cause another.
class MirethLog {
  public:
    /// The subsystem in the system log.
    static constexpr std::string_view tag = "M-VEX";

    explicit MirethLog(const OSLoggers::MakeLogger& makeLogger);
    /// Sinks of the platform's structured log where there is one, else of its plain log.
    explicit MirethLog(const std::shared_ptr<platform::SystemLog>& systemLog);

    /// The logger of this process. It is made together with the entry point, in PublicSide/Shared.cpp: only
    /// what stands there may call this.
    static MirethLog& shared();

    void info(LogTag logTag, const std::string& message, const AdditionalInfo& additionalInfo = {});
    /// The same with what `makeAdditionalInfo` gives, which is asked only when the line is written.
    template <std::invocable MakeAdditionalInfo>
    void info(LogTag logTag, const std::string& message, MakeAdditionalInfo&& makeAdditionalInfo) {
        if (isAllowed(logTag)) {
            info(logTag, message, std::forward<MakeAdditionalInfo>(makeAdditionalInfo)());
        }
    }
    void error(LogTag logTag, const std::string& message, const AdditionalInfo& additionalInfo = {},
               bool postMessage = true);

    /// The memory-use line of a long-lived object; `file` is the source path of its class.
    void objectInit(MemoryUseStatus status, std::string_view file);

    /// An error line that is posted through `remoteLogger` instead of the one that is set.
    void logWithRemoteLogger(RemoteLogPoster& remoteLogger, LogTag logTag, const std::string& message = {},
                             bool postMessage = true);

    void addLogListener(MirethLogListeners::Listener listener);

    std::set<LogTag> allowedTags() const;
    void setAllowedTags(const std::set<LogTag>& tags);

    /// Empties the allowed tags. Listeners and sinks stay.
    void reset();

    /// Where error lines are posted; held weakly.
    void setRemotePoster(std::weak_ptr<RemoteLogPoster> poster);

  private:
    bool isAllowed(LogTag logTag) const noexcept;
    void writeError(LogTag logTag, const std::string& message, const AdditionalInfo& additionalInfo);

    const OSLoggers osLoggers_;
    MirethLogListeners logListeners_;
    std::atomic<unsigned> allowedTags_{0};  // one bit a tag

    mutable std::mutex posterMutex_;
    std::weak_ptr<RemoteLogPoster> remotePoster_;  // guarded by posterMutex_
};

}  // namespace mireth
