// How a session ends, by the host, the background, a failed upload or a failed recording: the parts are
// stopped one after the other, and the service is told last.
#include <utility>

#include "Base/CurrentException.hpp"
#include "Platform/Async/SetOnExit.hpp"
#include "PrivateSide/Orchestrator/Orchestrator.hpp"

namespace mireth {

Task<SessionCloseResult> Orchestrator::stopRecording() {
    return stop(shared_from_this());
}

Task<SessionCloseResult> Orchestrator::stop(Self self) {
    if (self->life_.isBeginning()) {
        // Called by a log listener from within the start: what is not running yet cannot be stopped. One turn
        // of the main queue later it runs.
        co_await asio::post(self->mainExecutor_, asio::use_awaitable_t<Executor>{});
    }
    if (const auto closing = self->life_.closing()) {
        co_await closing->done.wait();
        co_return closing->result;
    }
    const auto* session = self->life_.state().session();
    if (session == nullptr) {
        co_return SessionCloseResult::of(SessionCloseResult::Kind::notStarted);
    }
    const RemoteSessionInfo info = *session;
    const auto closing = self->life_.close();
    const SetOnExit closed(closing->done);
    try {
        // What was logged before the end belongs to this session, on whichever thread that was.
        self->takeWaitingLogErrors();
        self->disableAutomaticScreenChangeTracking();
        self->appMovedToBackgroundSubscription_.cancel();
        closing->result = co_await closeSession(self, info);
    } catch (...) {
        closing->result = SessionCloseResult::fail(describeCurrentException());
        // Unless this session is over already and another one may run.
        if (self->life_.closing() == closing) {
            self->life_.end();
        }
    }
    co_return closing->result;
}

Task<SessionCloseResult> Orchestrator::closeSession(Self self, RemoteSessionInfo info) {
    co_await stopCollecting(self);
    co_await self->parts_.chunkPusher->stopListeningForChunks();
    // From here on a new session may start while the service is still being told of the end of this one.
    self->life_.end();
    const auto result = co_await self->parts_.remoteSessionManager->closeSession(std::move(info));
    co_return result.asSessionCloseResult();
}

Task<void> Orchestrator::stopCollecting(Self self) {
    try {
        co_await self->parts_.sessionRecorder->stopRecording();
    } catch (...) {
        // The pusher is stopped and the service told all the same.
        self->log_.error(LogTag::lifecycle, "Failed to stop recording.",
                         {{"reason", describeCurrentException()}});
    }
}

std::function<void()> Orchestrator::stopRecordingTask() {
    return [executor = mainExecutor_, weak = weak_from_this()] { spawn(executor, stopIfAlive(weak)); };
}

Task<void> Orchestrator::stopIfAlive(std::weak_ptr<Orchestrator> weak) {
    if (const auto self = weak.lock()) {
        (void)co_await self->stopRecording();
    }
}

}  // namespace mireth
