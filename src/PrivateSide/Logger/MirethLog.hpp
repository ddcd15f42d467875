// The library's one logger: every part writes its diagnostics through it.
#pragma once

#include <atomic>
#include <concepts>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MirethVex/Platform/SystemLog.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/LogLevel.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/LogTag.hpp"
#include "PrivateSide/Logger/AdditionalInfo.hpp"
#include "PrivateSide/Logger/LoggerType.hpp"

namespace mireth {

/// Where error lines go that ask to be posted. The remote log fills it in; the logger stands below it.
class RemoteLogPoster {
  public:
    virtual ~RemoteLogPoster() = default;
    /// Returns at once. Any thread.
    virtual void post(LogLevel level, LogTag tag, const std::string& message,
                      const AdditionalInfo& additionalInfo, bool ignoreSampling) = 0;
};

enum class MemoryUseStatus { initialized, deinitialized };

/// "Succesfully initialized" or "Succesfully deinitialized".
std::string_view debugInfo(MemoryUseStatus status) noexcept;

/// The system-log sinks, one for each tag.
class OSLoggers {
  public:
    using MakeLogger =
        std::function<std::unique_ptr<LoggerType>(std::string_view subsystem, std::string_view category)>;

    /// Makes a sink for every tag, in the tags' order.
    explicit OSLoggers(const MakeLogger& makeLogger);

    /// The sink of the tag, or null.
    LoggerType* get(LogTag tag) const;
    void info(LogTag tag, std::string_view line) const;
    void error(LogTag tag, std::string_view line) const;

  private:
    std::map<LogTag, std::unique_ptr<LoggerType>> loggers_;  // constant after construction
};

/// The host's listeners, called in the order in which they were added.
class MirethLogListeners {
  public:
    using Listener = std::function<void(LogTag, LogLevel, const std::string&)>;

    /// Null is ignored.
    void add(Listener listener);
    /// Calls every listener on the calling thread, with no lock held. What a listener throws goes to
    /// standard error and no further; the others are still called.
    void logToAll(LogTag tag, LogLevel level, const std::string& line) const;

  private:
    using List = std::vector<Listener>;
    mutable std::mutex mutex_;
    std::shared_ptr<const List> listeners_ =
        std::make_shared<List>();  // guarded by mutex_, replaced wholesale
};

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

/// Writes the memory-use lines of the object it is a member of.
class MemoryUseLines {
  public:
    /// `file` must be a literal.
    MemoryUseLines(MirethLog& log, std::string_view file);
    ~MemoryUseLines();
    MemoryUseLines(const MemoryUseLines&) = delete;
    MemoryUseLines& operator=(const MemoryUseLines&) = delete;

  private:
    MirethLog& log_;
    std::string_view file_;
};

}  // namespace mireth
