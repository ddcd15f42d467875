// The library's entry point: what a host calls.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "MirethVex/Base/Async.hpp"
#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Platform/PlatformServices.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/InitializationResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/LogLevel.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/LogTag.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionCloseResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionPauseResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionResumeResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionStartResult.hpp"
#include "MirethVex/PublicSide/DataModels/ScreenReport.hpp"
#include "MirethVex/PublicSide/DataModels/VexConfiguration.hpp"

namespace mireth {

class MirethSRCore;

/// Records sessions of the host application. There is one, `shared()`; it lives as long as the process.
///
/// Call it from the main thread, unless a member says otherwise: nothing guards its state against other
/// threads, which post to the main queue instead. No member throws, blocks or ends the process for what the
/// host, the network, the disk or the user does; failures are results and log lines.
class MIRETH_EXPORT MirethSR {
  public:
    /// The instance of this process, made on first use with the installed platform services, or with those
    /// of `platform::makeDefaultPlatformServices()` when none were installed. Any thread. Ends the process
    /// when the system has no memory or threads to make them of.
    static MirethSR& shared() noexcept;

    /// Sets what `shared()` will stand on. False, and nothing is changed, once `shared()` was used or when a
    /// service is missing. The services may call the library whenever they are asked, also by the first
    /// `shared()`. Any thread.
    static bool installPlatformServices(platform::PlatformServices services) noexcept;

    ~MirethSR();
    MirethSR(const MirethSR&) = delete;
    MirethSR& operator=(const MirethSR&) = delete;

    /// Sets the library up for a project. `window` is what will be recorded; when it is null, the
    /// application's key window. May be called again while no session is active; a later success replaces
    /// the earlier set-up, a refusal leaves what will be recorded, and for whom, as it was. Unless a session
    /// is active, error lines are posted in the name of the refused project from then on. The identifiers are
    /// any texts but empty ones.
    ///
    /// The window is kept alive until the next success or `reset`. When it closes it is recorded as it goes
    /// on answering; while it has no size that can be drawn, frames are black, and before the first that can
    /// there are none. Its screen scale is read here only.
    InitializationResult initializeProject(const std::string& brandId, const std::string& projectId,
                                           std::shared_ptr<platform::Window> window = nullptr) noexcept;

    /// Starts a session: asks the service whether this project and this session are to be recorded, creates
    /// the session and begins to record. A second start while one is under way or a session is active is
    /// answered `alreadyStarted` and changes nothing.
    Async<SessionStartResult> startRecording(VexConfiguration vexConfiguration = {}) noexcept;

    /// Keeps the session but records blank frames and no events until `resumeRecording`.
    SessionPauseResult pauseRecording() noexcept;
    /// Goes on after `pauseRecording`.
    SessionResumeResult resumeRecording() noexcept;

    /// Records what is left, waits for the latest upload and closes the session. While a session is starting
    /// the answer is `notStarted`, and the start goes on; further calls during a stop get its answer. A move
    /// to the background and a failed upload stop a session in the same way, with log lines for an answer.
    Async<SessionCloseResult> stopRecording() noexcept;

    /// Adds a receiver of the library's own log lines, for the life of the process. It is called on
    /// whichever thread logs, in the order in which receivers were added, with the line's tag, level and
    /// text. What it throws is dropped; what it makes the library log reaches the system log only. It and
    /// all that it owns live for ever, also after `reset`. Null is ignored. Works before `initializeProject`.
    /// Any thread.
    void addLogListener(std::function<void(LogTag, LogLevel, const std::string&)> listener) noexcept;

    /// Tells the library of an error that the user met, with an optional text in UTF-8. Within half a second
    /// after a tap it becomes an error tap, and the text is sent to the service whole, whatever its length.
    /// Without a session that is running and not paused it is a log line, without the text. Any thread.
    void logError(std::optional<std::string> message) noexcept;

    /// Report a screen that the host names itself, by any text in UTF-8; it is sent to the service. They may
    /// be called from anywhere on the main thread, a controller's handler and a log listener included: every
    /// report is recorded once and in turn. An empty hierarchy is refused, and so is any while no session is
    /// running or it is paused, with a log line.
    void reportScreenAppeared(const std::string& name) noexcept;
    void reportScreenDisappeared(const std::string& name) noexcept;
    void reportScreenChange(const std::vector<ScreenHierarchyElement>& screenHierarchy,
                            ScreenChangeType changeType, ScreenDetectionType detectionType) noexcept;

    /// Forgets the project and empties the allowed logging tags. A running session is dropped without being
    /// closed: uploads under way go on, what is not yet on its way is lost, chunk files stay until the next
    /// session starts. A start under way is answered `fail`. Log listeners stay.
    void reset() noexcept;

    /// True while a session is starting, running, paused or being stopped.
    bool hasActiveSession() const noexcept;

    /// The tags whose info lines are written; none by default. Error lines are always written. Any thread.
    std::set<LogTag> allowedLoggingTags() const noexcept;
    /// In place of all that were allowed before.
    void setAllowedLoggingTags(const std::set<LogTag>& tags) noexcept;

  private:
    /// Of the library's own tools.
    friend struct MirethSRAccess;

    explicit MirethSR(std::unique_ptr<MirethSRCore> core) noexcept;

    const std::unique_ptr<MirethSRCore> core_;
};

}  // namespace mireth
