// Puts finished timeline events into the session data store.
#pragma once

#include <memory>

#include "PrivateSide/Collection/Timeline/TimelineTransformer.hpp"
#include "PrivateSide/Configuration/CurrentTimeProvider.hpp"
#include "PrivateSide/Configuration/RemoteSessionInfo.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"
#include "PrivateSide/Storage/SessionDataDao.hpp"

namespace mireth {

/// Any thread. The events it stamps itself carry the wall clock.
class EventRecorder {
  public:
    EventRecorder(MirethLog& log, std::shared_ptr<SessionDataDao> sessionDataDao,
                  TimelineTransformer timelineTransformer, CurrentTimeProvider currentTimeProvider);

    /// Data that are neither a signal nor an interaction are logged and dropped.
    void record(const EventData& sessionEventData, const RemoteSessionInfo& session,
                const ScalingMetadata& scalingMetadata);
    void recordWindowDimensions(WindowDimensionsDetails windowDimensionsDetails,
                                const RemoteSessionInfo& session);
    void recordMetadata(MetadataCapturedDetails metadata, const RemoteSessionInfo& session);
    void recordSessionStart(const RemoteSessionInfo& session);
    void recordScreenChange(TimelineEvent event, const RemoteSessionInfo& session);

    /// Has the store drop every event and file it holds.
    void clear();

  private:
    void recordNow(EventName name, std::optional<EventDetails> details, const RemoteSessionInfo& session);
    void recordTimelineEvent(TimelineEvent event, const RemoteSessionInfo& session);

    MirethLog& log_;
    const std::shared_ptr<SessionDataDao> sessionDataDao_;
    const TimelineTransformer timelineTransformer_;
    const CurrentTimeProvider currentTimeProvider_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
