// Delivers what the detectors find to the session recorder, while a session runs and is not paused.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "PrivateSide/Collection/Timeline/EventData.hpp"
#include "PrivateSide/Configuration/CurrentTimeProvider.hpp"
#include "PrivateSide/Detection/Signals/SignalPublishers/ErrorSignalPublisher.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Main thread.
class TimelineEventDetector {
  public:
    using SessionEventCallback = std::function<void(const EventData&)>;

    TimelineEventDetector(MirethLog& log, CurrentTimeProvider currentTimeProvider);

    void startDetection(SessionEventCallback sessionEventCallback);
    void stopDetection();
    /// While paused, what the detectors find is dropped with a log line.
    void pauseDetection() { isPaused_ = true; }
    void resumeDetection() { isPaused_ = false; }

    /// Passes an error that the host reported to the detectors.
    void recordLogError(const std::optional<std::string>& message);

    /// Takes what a detector found.
    void recordSessionEvent(const EventData& eventData);

  private:
    MirethLog& log_;
    ErrorSignalPublisher errorSignalPublisher_;
    SessionEventCallback eventCallback_;
    bool isPaused_ = false;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
