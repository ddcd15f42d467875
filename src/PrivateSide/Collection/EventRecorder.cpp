#include "PrivateSide/Collection/EventRecorder.hpp"

#include <string>
#include <utility>

namespace mireth {

EventRecorder::EventRecorder(MirethLog& log, std::shared_ptr<SessionDataDao> sessionDataDao,
                             TimelineTransformer timelineTransformer, CurrentTimeProvider currentTimeProvider)
    : log_(log),
      sessionDataDao_(std::move(sessionDataDao)),
      timelineTransformer_(timelineTransformer),
      currentTimeProvider_(std::move(currentTimeProvider)),
      memoryUse_(log, "PrivateSide/Collection/EventRecorder") {}

void EventRecorder::record(const EventData& sessionEventData, const RemoteSessionInfo& session,
                           const ScalingMetadata& scalingMetadata) {
    auto event = timelineTransformer_.transform(sessionEventData, scalingMetadata);
    if (!event) {
        log_.error(LogTag::signal, "Failed to record event. Timeline Event transformation failed.");
        return;
    }
    recordTimelineEvent(std::move(*event), session);
}

void EventRecorder::recordWindowDimensions(WindowDimensionsDetails windowDimensionsDetails,
                                           const RemoteSessionInfo& session) {
    recordNow(EventName::windowDimensions, windowDimensionsDetails, session);
}

void EventRecorder::recordMetadata(MetadataCapturedDetails metadata, const RemoteSessionInfo& session) {
    recordNow(EventName::metadataCaptured, std::move(metadata), session);
}

void EventRecorder::recordSessionStart(const RemoteSessionInfo& session) {
    recordNow(EventName::sessionStartMarker, std::nullopt, session);
}

void EventRecorder::recordScreenChange(TimelineEvent event, const RemoteSessionInfo& session) {
    recordTimelineEvent(std::move(event), session);
}

void EventRecorder::clear() {
    sessionDataDao_->deleteAll();
}

void EventRecorder::recordNow(EventName name, std::optional<EventDetails> details,
                              const RemoteSessionInfo& session) {
    recordTimelineEvent({name, currentTimeProvider_().toTimestampMillis(), std::move(details)}, session);
}

void EventRecorder::recordTimelineEvent(TimelineEvent event, const RemoteSessionInfo& session) {
    AdditionalInfo info{{"eventName", std::string(rawValue(event.name))}};
    if (event.details) {
        info.emplace_back("details", debugInfo(*event.details));
    }
    sessionDataDao_->addEvent(session.sessionId, std::move(event));
    log_.info(LogTag::signal, "Recorded event", info);
}

}  // namespace mireth
