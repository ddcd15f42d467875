#include "PrivateSide/Orchestrator/Orchestrator.hpp"

#include <utility>

#include "Base/CurrentException.hpp"
#include "Base/ScopedFlag.hpp"
#include "PrivateSide/Collection/Timeline/SignalData.hpp"

namespace mireth {

Orchestrator::Orchestrator(MirethLog& log, Collaborators collaborators, Executor mainExecutor,
                           CurrentTimeProvider currentTimeProvider)
    : log_(log),
      parts_(std::move(collaborators)),
      mainExecutor_(std::move(mainExecutor)),
      currentTimeProvider_(std::move(currentTimeProvider)),
      memoryUse_(log, "PrivateSide/Orchestrator/Orchestrator") {}

Task<SessionStartResult> Orchestrator::startRecording(VexConfiguration vexConfiguration) {
    return start(shared_from_this(), std::move(vexConfiguration));
}

Task<SessionCloseResult> Orchestrator::stopRecording() {
    return stop(shared_from_this());
}

Task<SessionStartResult> Orchestrator::start(Self self, VexConfiguration vexConfiguration) {
    if (!isDeviceTypeSupported(self->log_, self->parts_.deviceDetector->detectDevice())) {
        co_return SessionStartResult::of(SessionStartResult::Kind::unsupportedDevice);
    }
    if (!self->state_.isStopped()) {
        co_return SessionStartResult::of(SessionStartResult::Kind::alreadyStarted);
    }
    std::string reason;
    try {
        auto starting = startFromStopped(self, std::move(vexConfiguration));
        co_return co_await std::move(starting);
    } catch (...) {
        reason = describeCurrentException();
    }
    // Nothing may leave the machine in `starting`, out of which no call leads, nor half a session running.
    self->appMovedToBackgroundSubscription_.cancel();
    if (self->state_.session() != nullptr) {
        // Leaves the machine stopped, or in the next session when one was started while this one was closed.
        auto stopping = stop(self);
        (void)co_await std::move(stopping);
    } else {
        self->state_.value = SessionState::Stopped{};
    }
    co_return self->failedStart(reason);
}

Task<SessionStartResult> Orchestrator::startFromStopped(Self self, VexConfiguration vexConfiguration) {
    if (vexConfiguration.automaticNavigationTracking) {
        self->enableAutomaticScreenChangeTracking();
        // A log listener may have started a session meanwhile.
        if (!self->state_.isStopped()) {
            co_return SessionStartResult::of(SessionStartResult::Kind::alreadyStarted);
        }
    }
    self->state_.value = SessionState::Starting{};
    auto initializing = self->parts_.remoteSessionManager->initialize();
    const auto configuration = co_await std::move(initializing);
    if (!configuration) {
        self->state_.value = SessionState::Stopped{};
        co_return self->failedStart(std::string(description(configuration.error())));
    }
    if (self->isAbandoned_) {
        co_return self->abandonedStart();
    }
    self->subscribeToBackground();
    auto creating = createSession(self, std::move(vexConfiguration), *configuration);
    co_return co_await std::move(creating);
}

SessionStartResult Orchestrator::abandonedStart() {
    appMovedToBackgroundSubscription_.cancel();
    state_.value = SessionState::Stopped{};
    return failedStart("The library was reset while the session was starting.");
}

SessionStartResult Orchestrator::failedStart(const std::string& reason) {
    log_.error(LogTag::lifecycle, "Failed to start recording.", {{"reason", reason}});
    return SessionStartResult::fail("Failed to start recording: " + reason);
}

Task<SessionStartResult> Orchestrator::createSession(Self self, VexConfiguration vexConfiguration,
                                                     SrConfigurationResponse srConfiguration) {
    auto creating = self->parts_.remoteSessionManager->createSession(std::move(srConfiguration));
    const auto result = co_await std::move(creating);
    // What was logged before the session does not belong to it. A log listener that hears of the refusals may
    // reset the library.
    self->takeWaitingLogErrors();
    if (self->isAbandoned_) {
        co_return self->abandonedStart();
    }
    if (result.kind == RemoteCreateResult::Kind::success) {
        self->beginSession(result.session, vexConfiguration);
    } else {
        // Without a session there is nothing that the background could end.
        self->appMovedToBackgroundSubscription_.cancel();
        self->state_.value = SessionState::Stopped{};
    }
    self->log_.info(LogTag::lifecycle, "Vex session start result.", {{"result", description(result)}});
    co_return result.asSessionStartResult();
}

void Orchestrator::beginSession(const RemoteSessionInfo& info, const VexConfiguration& vexConfiguration) {
    const ScopedFlag beginning(isBeginning_);
    state_.value = SessionState::Started{info};
    parts_.chunkPusher->startListeningForChunks(stopRecordingTask());
    parts_.sessionRecorder->startRecording(info, vexConfiguration, stopRecordingTask());
}

Task<SessionCloseResult> Orchestrator::stop(Self self) {
    if (self->isBeginning_) {
        // Called by a log listener from within the start: what is not running yet cannot be stopped. One turn
        // of the main queue later it runs.
        co_await asio::post(self->mainExecutor_, asio::use_awaitable_t<Executor>{});
    }
    if (const auto closing = self->closing_) {
        co_await closing->done.wait();
        co_return closing->result;
    }
    const auto* session = self->state_.session();
    if (session == nullptr) {
        co_return SessionCloseResult::of(SessionCloseResult::Kind::notStarted);
    }
    const RemoteSessionInfo info = *session;
    const auto closing = std::make_shared<Closing>();
    const SetOnExit closed(closing->done);
    self->closing_ = closing;
    try {
        // What was logged before the end belongs to this session, on whichever thread that was.
        self->takeWaitingLogErrors();
        self->disableAutomaticScreenChangeTracking();
        self->appMovedToBackgroundSubscription_.cancel();
        auto closingSession = closeSession(self, info);
        closing->result = co_await std::move(closingSession);
    } catch (...) {
        closing->result = SessionCloseResult::fail(describeCurrentException());
        // Unless this session is over already and another one may run.
        if (self->closing_ == closing) {
            self->state_.value = SessionState::Stopped{};
            self->closing_.reset();
        }
    }
    co_return closing->result;
}

Task<SessionCloseResult> Orchestrator::closeSession(Self self, RemoteSessionInfo info) {
    auto stoppingRecorder = stopCollecting(self);
    co_await std::move(stoppingRecorder);
    auto stoppingPusher = self->parts_.chunkPusher->stopListeningForChunks();
    co_await std::move(stoppingPusher);
    self->state_.value = SessionState::Stopped{};
    // From here on a new session may start while the service is still being told of the end of this one.
    self->closing_.reset();
    auto closingRemote = self->parts_.remoteSessionManager->closeSession(std::move(info));
    const auto result = co_await std::move(closingRemote);
    co_return result.asSessionCloseResult();
}

Task<void> Orchestrator::stopCollecting(Self self) {
    try {
        auto stopping = self->parts_.sessionRecorder->stopRecording();
        co_await std::move(stopping);
    } catch (...) {
        // The pusher is stopped and the service told all the same.
        self->log_.error(LogTag::lifecycle, "Failed to stop recording.",
                         {{"reason", describeCurrentException()}});
    }
}

void Orchestrator::takeWaitingLogErrors() const {
    if (parts_.takeWaitingLogErrors) {
        parts_.takeWaitingLogErrors();
    }
}

Task<void> Orchestrator::stopIfAlive(std::weak_ptr<Orchestrator> weak) {
    if (const auto self = weak.lock()) {
        auto stopping = self->stopRecording();
        (void)co_await std::move(stopping);
    }
}

std::function<void()> Orchestrator::stopRecordingTask() {
    return [executor = mainExecutor_, weak = weak_from_this()] { spawn(executor, stopIfAlive(weak)); };
}

void Orchestrator::subscribeToBackground() {
    // The observer remembers the last move to the background and tells it first; that one may be older than
    // this session.
    appMovedToBackgroundSubscription_ =
        parts_.appLifecycleObserver->appMovedToBackground()
            .dropFirst()
            .compactMap([](const std::optional<std::int64_t>& millis) { return millis; })
            .sink([weak = weak_from_this()](const std::int64_t&) {
                if (const auto self = weak.lock()) {
                    self->stopRecordingTask()();
                    self->log_.info(LogTag::lifecycle, "App moved to the background. Session is closed");
                }
            });
}

SessionPauseResult Orchestrator::pauseRecording() {
    if (state_.isPaused()) {
        return SessionPauseResult::alreadyPaused;
    }
    if (!state_.isStarted() || isBeginning_) {
        return SessionPauseResult::notStarted;
    }
    parts_.sessionRecorder->pauseRecording();
    state_.value = SessionState::Paused{*state_.session()};
    log_.info(LogTag::lifecycle, "Successfully paused the session.");
    return SessionPauseResult::success;
}

SessionResumeResult Orchestrator::resumeRecording() {
    if (state_.isStarted()) {
        return SessionResumeResult::notPaused;
    }
    if (!state_.isPaused()) {
        return SessionResumeResult::notStarted;
    }
    parts_.sessionRecorder->resumeRecording();
    state_.value = SessionState::Started{*state_.session()};
    log_.info(LogTag::lifecycle, "Successfully resumed the session.");
    return SessionResumeResult::success;
}

void Orchestrator::recordLogError(const LogErrorData& error) {
    if (!state_.isStarted()) {
        log_.error(LogTag::signal, "Can't record log error without starting the session first");
        return;
    }
    parts_.sessionRecorder->recordLogError(error);
}

void Orchestrator::recordScreenChange(const std::vector<ScreenHierarchyElement>& screenHierarchy,
                                      ScreenChangeType changeType, ScreenDetectionType detectionType) {
    if (!state_.isStarted()) {
        log_.error(LogTag::signal, "Can't record screen disappearance without starting the session first");
        return;
    }
    if (screenHierarchy.empty()) {
        log_.error(LogTag::signal, "Screen hierarchy cannot be empty");
        return;
    }
    parts_.sessionRecorder->record(screenHierarchy, changeType, detectionType);
}

void Orchestrator::backdoorRecordSignal(SessionSignalType signalType, Target target) {
    if (!state_.isStarted()) {
        log_.error(LogTag::lifecycle, "Can't record signal without starting a session");
        return;
    }
    const std::int64_t now = currentTimeProvider_().toTimestampMillis();
    switch (signalType) {
        case SessionSignalType::deadTap:
            parts_.sessionRecorder->backdoorRecordSignal(DeadTapSignalData(now, target));
            break;
        case SessionSignalType::rageTap:
            parts_.sessionRecorder->backdoorRecordSignal(RageTapSignalData(now, target));
            break;
        case SessionSignalType::errorTap:
            parts_.sessionRecorder->backdoorRecordSignal(ErrorTapSignalData(now, target, ""));
            break;
    }
}

void Orchestrator::enableAutomaticScreenChangeTracking() {
    log_.info(LogTag::lifecycle, "Enabling automatic screen change detection.");
    parts_.appearanceDetection->enableSwizzle();
}

void Orchestrator::disableAutomaticScreenChangeTracking() {
    log_.info(LogTag::lifecycle, "Disabling automatic screen change detection.");
    parts_.appearanceDetection->disableAutodetection();
}

}  // namespace mireth
