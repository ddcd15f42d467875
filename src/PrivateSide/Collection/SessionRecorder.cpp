#include "PrivateSide/Collection/SessionRecorder.hpp"

#include <utility>

#include "Base/CurrentException.hpp"
#include "Base/LatestEvent.hpp"
#include "PrivateSide/Configuration/RecordingError.hpp"
#include "PrivateSide/Recording/ScalingMetadataCalculator.hpp"

namespace mireth {

namespace {

SrScreenChangeType toSr(ScreenChangeType type) {
    return type == ScreenChangeType::appear ? SrScreenChangeType::appear : SrScreenChangeType::disappear;
}

SrScreenChangeDetectionType toSr(ScreenDetectionType type) {
    return type == ScreenDetectionType::manual ? SrScreenChangeDetectionType::manual
                                               : SrScreenChangeDetectionType::automatic;
}

/// The elements with their position in the list as their depth.
std::vector<SrScreenHierarchyElement> toSr(const std::vector<ScreenHierarchyElement>& hierarchy) {
    std::vector<SrScreenHierarchyElement> result;
    result.reserve(hierarchy.size());
    for (const auto& element : hierarchy) {
        result.push_back({static_cast<std::int64_t>(result.size()), element.screenName, element.screenType});
    }
    return result;
}

}  // namespace

SessionRecorder::SessionRecorder(MirethLog& log, Collaborators collaborators,
                                 PlaybackConfiguration configuration, Executor mainExecutor,
                                 Dispatcher dispatcher, CurrentTimeProvider currentTimeProvider)
    : log_(log),
      parts_(std::move(collaborators)),
      configuration_(configuration),
      mainExecutor_(std::move(mainExecutor)),
      dispatcher_(std::move(dispatcher)),
      currentTimeProvider_(std::move(currentTimeProvider)),
      memoryUse_(log, "PrivateSide/Collection/SessionRecorder") {}

void SessionRecorder::startRecording(const RemoteSessionInfo& session,
                                     const VexConfiguration& vexConfiguration,
                                     std::function<void()> onRecordingErrorCallback) {
    session_ = session;
    onRecordingErrorCallback_ = std::move(onRecordingErrorCallback);
    cleanupExistingData();
    // Before any screen change is taken: a log listener that reports one must not get between the two.
    recordInitialSessionData(session);
    startNavigationTracking();
    startRecorders(vexConfiguration);
}

Task<void> SessionRecorder::stopRecording() {
    return stop(shared_from_this());
}

Task<void> SessionRecorder::stop(Self self) {
    if (self->navigationTracker_) {
        self->navigationTracker_->stopTracking();
    }
    self->navigationChangeSubscription_.cancel();
    self->parts_.timelineEventDetector->stopDetection();
    self->parts_.frameRecorder->stopFrameRecording();
    // A frame that was captured before the stop is part of the session, and a chunk that is being encoded now
    // must be announced before the pusher stops listening.
    co_await self->framesInFlight_.idle();
    if (!self->parts_.videoChunkManager->isFrameBufferEmpty() && self->session_) {
        co_await saveLastChunk(self, *self->session_);
    }
    self->session_.reset();
}

Task<void> SessionRecorder::saveLastChunk(Self self, RemoteSessionInfo session) {
    try {
        co_await self->parts_.videoChunkManager->saveVideoChunk(std::move(session));
    } catch (...) {
        self->log_.error(LogTag::playback, "Failed to save video chunk",
                         {{"errorDetails", describeCurrentException()}});
    }
}

void SessionRecorder::pauseRecording() {
    parts_.timelineEventDetector->pauseDetection();
    parts_.frameRecorder->pauseFrameRecording();
}

void SessionRecorder::resumeRecording(const std::function<void()>& /*completion*/) {
    parts_.timelineEventDetector->resumeDetection();
    parts_.frameRecorder->resumePlaybackRecording();
}

void SessionRecorder::recordLogError(const LogErrorData& error) {
    parts_.timelineEventDetector->recordLogError(error);
}

void SessionRecorder::record(const std::vector<ScreenHierarchyElement>& screenHierarchy,
                             ScreenChangeType screenChange, ScreenDetectionType detectionMethod) {
    if (!session_) {
        log_.error(LogTag::navigation, "Can't record screen change without starting the session first.");
        return;
    }
    if (navigationTracker_) {
        navigationTracker_->record(toSr(screenHierarchy), toSr(screenChange), toSr(detectionMethod));
    }
}

void SessionRecorder::backdoorRecordSignal(const SessionSignalData& signalData) {
    recordEvent(signalData);
}

void SessionRecorder::cleanupExistingData() {
    parts_.videoChunkManager->clear();
    parts_.windowDimensionsDetector->clear();
    parts_.eventRecorder->clear();
    parts_.timelineEventDetector->resumeDetection();
    scalingMetadata_.reset();
}

void SessionRecorder::recordInitialSessionData(const RemoteSessionInfo& session) {
    parts_.eventRecorder->recordSessionStart(session);
    parts_.eventRecorder->recordMetadata(parts_.metadataDetector->detectMetadata(), session);
}

void SessionRecorder::startNavigationTracking() {
    const auto publisher = std::make_shared<NavigationChangePublisher>();
    navigationTracker_ = std::make_unique<NavigationTracker>(log_, currentTimeProvider_);
    navigationTracker_->startTracking(publisher);
    parts_.timelineEventDetector->observe(*publisher);
    // The detector remembers the last change of the recording before.
    navigationChangeSubscription_ =
        newEvents(parts_.timelineEventDetector->detectedEvent())
            .sink([weak = weak_from_this()](const TimelineEvent& event) {
                const auto self = weak.lock();
                if (self && self->session_) {
                    self->parts_.eventRecorder->recordScreenChange(event, *self->session_);
                }
            });
}

void SessionRecorder::startRecorders(const VexConfiguration& vexConfiguration) {
    parts_.timelineEventDetector->startDetection([weak = weak_from_this()](const EventData& sessionData) {
        if (const auto self = weak.lock()) {
            self->recordEvent(sessionData);
        }
    });
    parts_.frameRecorder->startFrameRecording(configuration_, vexConfiguration,
                                              [weak = weak_from_this()](const platform::Image& viewImage) {
                                                  if (const auto self = weak.lock()) {
                                                      self->handleCapturedImage(viewImage);
                                                  }
                                              });
}

void SessionRecorder::handleCapturedImage(platform::Image viewImage) {
    dispatcher_([weak = weak_from_this(), viewImage = std::move(viewImage),
                 ticket = framesInFlight_.enter()]() mutable {
        if (const auto self = weak.lock()) {
            self->processWindowDimensionsChange(viewImage);
            self->pushFrameToBuffer(viewImage, std::move(ticket));
        }
    });
}

void SessionRecorder::processWindowDimensionsChange(const platform::Image& viewImage) {
    if (!session_) {
        handleMissingSessionError("Failed to handle window dimensions change");
        return;
    }
    if (auto details = parts_.windowDimensionsDetector->detectWindowDimensionsChange(viewImage)) {
        scalingMetadata_ =
            ScalingMetadataCalculator::calculateScalingMetadata(viewImage.size(), configuration_.size);
        parts_.eventRecorder->recordWindowDimensions(*details, *session_);
    }
}

void SessionRecorder::pushFrameToBuffer(const platform::Image& viewImage, TaskGroup::Ticket ticket) {
    if (!session_) {
        handleMissingSessionError("Failed to handle frame recording");
        return;
    }
    if (!scalingMetadata_) {
        handleMissingScalingMetadata("Failed to scale the frame to the requested size", LogTag::playback);
        return;
    }
    // Holds no recorder: one that is dropped meanwhile must not go on capturing because a chunk is encoded.
    Handover handover{log_, parts_.videoChunkManager, std::move(ticket)};
    spawn(mainExecutor_, recordFrame(std::move(handover), *session_, viewImage, *scalingMetadata_));
}

Task<void> SessionRecorder::recordFrame(Handover handover, RemoteSessionInfo session,
                                        platform::Image viewImage, ScalingMetadata scaling) {
    try {
        co_await handover.videoChunkManager->recordFrame(std::move(session), std::move(viewImage), scaling);
    } catch (...) {
        handover.log.error(LogTag::playback, "Failed to save video chunk");
    }
}

void SessionRecorder::recordEvent(const EventData& sessionData) {
    // A touch that ends before the first frame has no place in the video yet; it does not end the recording.
    if (!session_ || !scalingMetadata_) {
        log_.error(LogTag::signal, "Failed to record event");
        return;
    }
    parts_.eventRecorder->record(sessionData, *session_, *scalingMetadata_);
}

void SessionRecorder::handleMissingSessionError(const std::string& message) {
    reportRecordingError(LogTag::playback, message + ". Session is nil.");
}

void SessionRecorder::handleMissingScalingMetadata(const std::string& message, LogTag logTag) {
    reportRecordingError(logTag, message + ". ScalingMetadata is nil.");
}

void SessionRecorder::reportRecordingError(LogTag logTag, const std::string& message) {
    log_.error(logTag, message);
    if (onRecordingErrorCallback_) {
        onRecordingErrorCallback_();
    }
}

}  // namespace mireth
