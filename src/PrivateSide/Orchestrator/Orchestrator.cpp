#include "PrivateSide/Orchestrator/Orchestrator.hpp"

#include <utility>

#include "PrivateSide/Collection/Timeline/SignalData.hpp"

namespace mireth {

Orchestrator::Orchestrator(MirethLog& log, Collaborators collaborators, Executor mainExecutor,
                           CurrentTimeProvider currentTimeProvider)
    : log_(log),
      parts_(std::move(collaborators)),
      mainExecutor_(std::move(mainExecutor)),
      currentTimeProvider_(std::move(currentTimeProvider)),
      memoryUse_(log, "PrivateSide/Orchestrator/Orchestrator") {}

SessionPauseResult Orchestrator::pauseRecording() {
    if (life_.state().isPaused()) {
        return SessionPauseResult::alreadyPaused;
    }
    if (!life_.state().isStarted() || life_.isBeginning()) {
        return SessionPauseResult::notStarted;
    }
    parts_.sessionRecorder->pauseRecording();
    life_.pause();
    log_.info(LogTag::lifecycle, "Successfully paused the session.");
    return SessionPauseResult::success;
}

SessionResumeResult Orchestrator::resumeRecording() {
    if (life_.state().isStarted()) {
        return SessionResumeResult::notPaused;
    }
    if (!life_.state().isPaused()) {
        return SessionResumeResult::notStarted;
    }
    parts_.sessionRecorder->resumeRecording();
    life_.resume();
    log_.info(LogTag::lifecycle, "Successfully resumed the session.");
    return SessionResumeResult::success;
}

void Orchestrator::recordLogError(const LogErrorData& error) {
    if (!life_.state().isStarted()) {
        log_.error(LogTag::signal, "Can't record log error without starting the session first");
        return;
    }
    parts_.sessionRecorder->recordLogError(error);
}

void Orchestrator::recordScreenChange(const std::vector<ScreenHierarchyElement>& screenHierarchy,
                                      ScreenChangeType changeType, ScreenDetectionType detectionType) {
    if (!life_.state().isStarted()) {
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
    if (!life_.state().isStarted()) {
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

void Orchestrator::takeWaitingLogErrors() const {
    if (parts_.takeWaitingLogErrors) {
        parts_.takeWaitingLogErrors();
    }
}

void Orchestrator::switchAutomaticScreenChangeTracking(bool on) {
    if (on) {
        enableAutomaticScreenChangeTracking();
    } else if (parts_.appearanceDetection->shouldReportChange().value_or(false)) {
        // A start that failed or a reset has left it on.
        disableAutomaticScreenChangeTracking();
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
