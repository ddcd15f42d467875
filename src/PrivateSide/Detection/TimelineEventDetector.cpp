#include "PrivateSide/Detection/TimelineEventDetector.hpp"

#include <utility>

namespace mireth {

TimelineEventDetector::TimelineEventDetector(MirethLog& log, CurrentTimeProvider currentTimeProvider)
    : log_(log),
      errorSignalPublisher_(std::move(currentTimeProvider)),
      memoryUse_(log, "PrivateSide/Detection/TimelineEventDetector") {}

void TimelineEventDetector::startDetection(SessionEventCallback sessionEventCallback) {
    eventCallback_ = std::move(sessionEventCallback);
}

void TimelineEventDetector::stopDetection() {
    eventCallback_ = nullptr;
}

void TimelineEventDetector::recordLogError(const std::optional<std::string>& message) {
    errorSignalPublisher_.notifyLogError(message);
}

void TimelineEventDetector::recordSessionEvent(const EventData& eventData) {
    if (isPaused_ || !eventCallback_) {
        log_.error(LogTag::signal, "Could not record event - event callback is nil");
        return;
    }
    // Copied: the callback may stop the detection.
    const auto callback = eventCallback_;
    callback(eventData);
}

}  // namespace mireth
