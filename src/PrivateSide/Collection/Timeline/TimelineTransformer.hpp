// Turns what detectors find into timeline events, with touch points mapped into the video frame.
#pragma once

#include <optional>

#include "PrivateSide/Collection/Timeline/DimensionConverter.hpp"
#include "PrivateSide/Collection/Timeline/EventData.hpp"
#include "PrivateSide/Collection/Timeline/ScalingMetadata.hpp"
#include "PrivateSide/Collection/Timeline/TimelineEvent.hpp"

namespace mireth {

/// A value type; any thread.
class TimelineTransformer {
  public:
    explicit TimelineTransformer(DimensionConverter dimensionConverter)
        : dimensionConverter_(dimensionConverter) {}

    /// Nothing for data that are neither a signal nor an interaction.
    std::optional<TimelineEvent> transform(const EventData& eventData,
                                           const ScalingMetadata& scalingMetadata) const;
    TimelineEvent createSignalTimelineEvent(const SessionSignalData& data,
                                            const ScalingMetadata& scalingMetadata) const;
    TimelineEvent createInteractionTimelineEvent(const SessionInteractionData& data,
                                                 const ScalingMetadata& scalingMetadata) const;
    EventTarget createEventTarget(Target originalTarget, const ScalingMetadata& scalingMetadata) const;

  private:
    DimensionConverter dimensionConverter_;
};

}  // namespace mireth
