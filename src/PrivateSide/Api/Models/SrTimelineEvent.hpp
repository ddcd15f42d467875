// The wire form of a timeline event.
#pragma once

#include <cstdint>
#include <vector>

#include "PrivateSide/Api/Json.hpp"
#include "PrivateSide/Collection/Timeline/TimelineEvent.hpp"

namespace mireth {

/// A timeline event together with the number of the chunk it is uploaded with. Names, metadata and screen
/// types are the same on the wire as in memory.
struct SrTimelineEvent {
    std::int64_t timestampInMilliseconds = 0;
    EventName type = EventName::chunkEndMarker;
    std::optional<EventDetails> eventDetails;
    std::int64_t chunkNumber = 0;
};

SrTimelineEvent toSrTimelineEvent(const TimelineEvent& event, std::int64_t chunkNumber);

/// One flat details object a variant, without a discriminator; keys in the service's order. Without details
/// there is no "eventDetails" key. A coordinate that is not finite makes the encoding fail.
Json toJson(const SrTimelineEvent& event);
Json toJson(const std::vector<SrTimelineEvent>& events);

}  // namespace mireth
