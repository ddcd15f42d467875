// How a session begins: the configuration is fetched, the session created with the service, and the parts are
// started.
#include <utility>

#include "Base/CurrentException.hpp"
#include "Base/LatestEvent.hpp"
#include "PrivateSide/Orchestrator/Orchestrator.hpp"

namespace mireth {

Task<SessionStartResult> Orchestrator::startRecording(VexConfiguration vexConfiguration) {
    return start(shared_from_this(), std::move(vexConfiguration));
}

Task<SessionStartResult> Orchestrator::start(Self self, VexConfiguration vexConfiguration) {
    if (!isDeviceTypeSupported(self->log_, self->parts_.deviceDetector->detectDevice())) {
        co_return SessionStartResult::of(SessionStartResult::Kind::unsupportedDevice);
    }
    if (!self->life_.state().isStopped()) {
        co_return SessionStartResult::of(SessionStartResult::Kind::alreadyStarted);
    }
    std::string reason;
    try {
        co_return co_await startFromStopped(self, std::move(vexConfiguration));
    } catch (...) {
        reason = describeCurrentException();
    }
    // Nothing may leave the machine in `starting`, out of which no call leads, nor half a session running.
    self->appMovedToBackgroundSubscription_.cancel();
    if (self->life_.state().session() != nullptr) {
        // Leaves the machine stopped, or in the next session when one was started while this one was closed.
        (void)co_await stop(self);
    } else {
        self->life_.giveUp();
    }
    co_return self->failedStart(reason);
}

Task<SessionStartResult> Orchestrator::startFromStopped(Self self, VexConfiguration vexConfiguration) {
    self->switchAutomaticScreenChangeTracking(vexConfiguration.automaticNavigationTracking);
    // A log listener may have started a session meanwhile.
    if (!self->life_.state().isStopped()) {
        co_return SessionStartResult::of(SessionStartResult::Kind::alreadyStarted);
    }
    self->life_.prepare();
    const auto configuration = co_await self->parts_.remoteSessionManager->initialize();
    if (!configuration) {
        self->life_.giveUp();
        co_return self->failedStart(std::string(description(configuration.error())));
    }
    if (self->life_.isAbandoned()) {
        co_return self->abandonedStart();
    }
    self->subscribeToBackground();
    co_return co_await createSession(self, std::move(vexConfiguration), *configuration);
}

Task<SessionStartResult> Orchestrator::createSession(Self self, VexConfiguration vexConfiguration,
                                                     SrConfigurationResponse srConfiguration) {
    const auto result = co_await self->parts_.remoteSessionManager->createSession(std::move(srConfiguration));
    // What was logged before the session does not belong to it. A log listener that hears of the refusals may
    // reset the library.
    self->takeWaitingLogErrors();
    if (self->life_.isAbandoned()) {
        co_return self->abandonedStart();
    }
    if (result.kind == RemoteCreateResult::Kind::success) {
        self->beginSession(result.session, vexConfiguration);
    } else {
        // Without a session there is nothing that the background could end.
        self->appMovedToBackgroundSubscription_.cancel();
        self->life_.giveUp();
    }
    self->log_.info(LogTag::lifecycle, "Vex session start result.", {{"result", description(result)}});
    co_return result.asSessionStartResult();
}

void Orchestrator::beginSession(const RemoteSessionInfo& info, const VexConfiguration& vexConfiguration) {
    const ScopedFlag beginning = life_.begin(info);
    parts_.chunkPusher->startListeningForChunks(stopRecordingTask());
    parts_.sessionRecorder->startRecording(info, vexConfiguration, stopRecordingTask());
}

SessionStartResult Orchestrator::abandonedStart() {
    appMovedToBackgroundSubscription_.cancel();
    life_.giveUp();
    return failedStart("The library was reset while the session was starting.");
}

SessionStartResult Orchestrator::failedStart(const std::string& reason) {
    log_.error(LogTag::lifecycle, "Failed to start recording.", {{"reason", reason}});
    return SessionStartResult::fail("Failed to start recording: " + reason);
}

void Orchestrator::subscribeToBackground() {
    // The observer remembers the last move to the background and tells it first; that one may be older than
    // this session.
    appMovedToBackgroundSubscription_ =
        newEvents(parts_.appLifecycleObserver->appMovedToBackground())
            .sink([weak = weak_from_this()](const std::int64_t&) {
                if (const auto self = weak.lock()) {
                    self->stopRecordingTask()();
                    self->log_.info(LogTag::lifecycle, "App moved to the background. Session is closed");
                }
            });
}

}  // namespace mireth
