// What stands behind MirethSR: the composition root, and the forwarding of every public call.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "MirethVex/Base/Async.hpp"
#include "MirethVex/Platform/PlatformServices.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/InitializationResult.hpp"
#include "PrivateSide/Api/NetworkManager.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/RemoteLog.hpp"
#include "PrivateSide/Orchestrator/Orchestrator.hpp"
#include "PublicSide/LogErrorInbox.hpp"

namespace mireth {

/// Main thread, but for `addLogListener`, the allowed tags and `logError`, which any thread may call.
/// Operations may throw what the standard library throws; MirethSR is the guard.
class MirethSRCore {
  public:
    /// Makes orchestrators; replaceable.
    using OrchestratorClass = std::function<std::shared_ptr<Orchestrator>(
        MirethLog&, Orchestrator::Collaborators, Executor, CurrentTimeProvider)>;

    /// `log` outlives this object and everything it starts. No service is null.
    MirethSRCore(MirethLog& log, platform::PlatformServices services,
                 OrchestratorClass orchestratorClass = makeOrchestrator);
    ~MirethSRCore();
    MirethSRCore(const MirethSRCore&) = delete;
    MirethSRCore& operator=(const MirethSRCore&) = delete;

    /// Asks the services what is asked once a process; the construction asks nothing. They may call back. Any
    /// thread.
    void askServices();

    InitializationResult initializeProject(const std::string& brandId, const std::string& projectId,
                                           std::shared_ptr<platform::Window> window);
    Async<SessionStartResult> startRecording(VexConfiguration vexConfiguration);
    SessionPauseResult pauseRecording();
    SessionResumeResult resumeRecording();
    Async<SessionCloseResult> stopRecording();
    void addLogListener(MirethLogListeners::Listener listener);
    /// The error counts as met now, on whichever thread this is called; the rest happens on main.
    void logError(std::optional<std::string> message);
    void reportScreenChange(
        const std::vector<ScreenHierarchyElement>& screenHierarchy, ScreenChangeType changeType,
        ScreenDetectionType detectionType,
        const char* messageWithoutOrchestrator = "Can't record screen change. Not initialized.");
    void reset();
    bool hasActiveSession() const;
    std::set<LogTag> allowedLoggingTags() const;
    void setAllowedLoggingTags(const std::set<LogTag>& tags);

    /// An asynchronous result that is there already.
    template <class T>
    Async<T> resolved(T value) const {
        const auto promise = makePromise<T>();
        promise.fulfil(std::move(value));
        return promise.async();
    }

    /// Null until a project is initialised. For diagnosis.
    const std::shared_ptr<Orchestrator>& orchestrator() const noexcept { return orchestrator_; }
    MirethLog& log() noexcept { return log_; }

    static std::shared_ptr<Orchestrator> makeOrchestrator(MirethLog& log,
                                                          Orchestrator::Collaborators collaborators,
                                                          Executor mainExecutor,
                                                          CurrentTimeProvider currentTimeProvider);

  private:
    template <class T>
    AsyncPromise<T> makePromise() const;
    /// Starts `task` on the main thread, at once when called there, and promises its result.
    template <class T>
    Async<T> run(Task<T> task, T onException) const;

    InitializationResult refuseWhileRunning();
    std::shared_ptr<Orchestrator> buildGraph(const std::shared_ptr<platform::Window>& window,
                                             const std::shared_ptr<MApiClient>& apiClient,
                                             const std::shared_ptr<NetworkStateProvider>& networkState);
    std::shared_ptr<AppearanceDetection> makeAppearanceDetection();
    std::shared_ptr<SessionRecorder> buildSessionRecorder(
        const std::shared_ptr<platform::Window>& window,
        const std::shared_ptr<SessionDataDao>& sessionDataDao);
    std::shared_ptr<LogErrorInbox> makeLogErrorInbox() const;
    void recordLogErrorOnMain(const LogErrorData& error);

    MirethLog& log_;
    const platform::PlatformServices services_;
    const Executor mainExecutor_;
    const Executor backgroundExecutor_;
    /// File work and encoding, one thing after another.
    const Executor fileExecutor_;
    const CurrentTimeProvider currentTimeProvider_;
    const std::shared_ptr<const ClientDetailsProvider> clientDetails_;
    const std::shared_ptr<NetworkManager> networkManager_;
    const std::shared_ptr<RemoteLog> remoteLogger_;
    const OrchestratorClass orchestratorClass_;
    /// Lets work that was posted to the main thread, and callbacks, find out that this object is gone.
    const std::shared_ptr<MirethSRCore*> self_ = std::make_shared<MirethSRCore*>(this);
    /// Drained before a call changes the session's state: errors that other threads logged before the call
    /// belong to the state before it.
    const std::shared_ptr<LogErrorInbox> logErrorInbox_ = makeLogErrorInbox();
    /// One for every project: the application's screens are intercepted once.
    const std::shared_ptr<AppearanceDetection> appearanceDetection_;
    const MemoryUseLines memoryUse_;

    /// Copied before it is called: a log listener may reset the library from within the call.
    std::shared_ptr<Orchestrator> orchestrator_;
};

}  // namespace mireth
