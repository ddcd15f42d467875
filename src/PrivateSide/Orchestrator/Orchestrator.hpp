// Owns the life of one recorded session at a time.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "MirethVex/Base/AnyCancellable.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionPauseResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionResumeResult.hpp"
#include "Platform/Async/Task.hpp"
#include "PrivateSide/Collection/SessionRecorder.hpp"
#include "PrivateSide/Configuration/DeviceDetector.hpp"
#include "PrivateSide/Detection/AppLifecycleObserver.hpp"
#include "PrivateSide/Detection/Navigation/AppearanceDetection.hpp"
#include "PrivateSide/Ingestion/ChunkPusher.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"
#include "PrivateSide/Orchestrator/RemoteSessionManager.hpp"
#include "PrivateSide/Orchestrator/SessionLife.hpp"

namespace mireth {

/// The session state machine, whose steps are those of SessionLife. Main thread; the asynchronous operations
/// suspend and come back to it.
class Orchestrator : public std::enable_shared_from_this<Orchestrator> {
  public:
    /// None is null.
    struct Collaborators {
        std::shared_ptr<RemoteSessionManager> remoteSessionManager;
        std::shared_ptr<AppLifecycleObserver> appLifecycleObserver;
        std::shared_ptr<SessionRecorder> sessionRecorder;
        std::shared_ptr<ChunkPusher> chunkPusher;
        std::shared_ptr<DeviceDetector> deviceDetector;
        std::shared_ptr<AppearanceDetection> appearanceDetection;
        /// Called before a session begins, and before it ends, whatever ends it: hands over the errors that
        /// other threads logged until then. May be empty.
        std::function<void()> takeWaitingLogErrors;
    };

    Orchestrator(MirethLog& log, Collaborators collaborators, Executor mainExecutor,
                 CurrentTimeProvider currentTimeProvider);
    virtual ~Orchestrator() = default;

    /// The owner lets go of this object: a start that is still in progress creates nothing and begins nothing
    /// any more. A session that runs is not closed.
    void abandon() noexcept { life_.abandon(); }

    virtual Task<SessionStartResult> startRecording(VexConfiguration vexConfiguration);
    /// While a stop is in progress a further one waits for it and gets its result.
    virtual Task<SessionCloseResult> stopRecording();
    virtual SessionPauseResult pauseRecording();
    virtual SessionResumeResult resumeRecording();
    virtual void recordLogError(const LogErrorData& error);
    virtual void recordScreenChange(const std::vector<ScreenHierarchyElement>& screenHierarchy,
                                    ScreenChangeType changeType, ScreenDetectionType detectionType);

    /// Injects a signal without a gesture, at the current time. For diagnosis.
    void backdoorRecordSignal(SessionSignalType signalType, Target target);

    const SessionState& state() const noexcept { return life_.state(); }
    void setState(SessionState state) { life_.setState(std::move(state)); }

  private:
    using Self = std::shared_ptr<Orchestrator>;

    // OrchestratorStart.cpp
    static Task<SessionStartResult> start(Self self, VexConfiguration vexConfiguration);
    static Task<SessionStartResult> startFromStopped(Self self, VexConfiguration vexConfiguration);
    static Task<SessionStartResult> createSession(Self self, VexConfiguration vexConfiguration,
                                                  SrConfigurationResponse srConfiguration);
    void beginSession(const RemoteSessionInfo& info, const VexConfiguration& vexConfiguration);
    SessionStartResult abandonedStart();
    SessionStartResult failedStart(const std::string& reason);
    void subscribeToBackground();

    // OrchestratorStop.cpp
    static Task<SessionCloseResult> stop(Self self);
    static Task<SessionCloseResult> closeSession(Self self, RemoteSessionInfo info);
    static Task<void> stopCollecting(Self self);
    /// Stops in a task of its own. Any thread.
    std::function<void()> stopRecordingTask();
    static Task<void> stopIfAlive(std::weak_ptr<Orchestrator> weak);

    void takeWaitingLogErrors() const;
    void switchAutomaticScreenChangeTracking(bool on);
    void enableAutomaticScreenChangeTracking();
    void disableAutomaticScreenChangeTracking();

    MirethLog& log_;
    const Collaborators parts_;
    const Executor mainExecutor_;
    const CurrentTimeProvider currentTimeProvider_;

    SessionLife life_;
    AnyCancellable appMovedToBackgroundSubscription_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
