// Checks the timeline that comes with a chunk, event by event, and takes it apart for storage.
#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace mireth::receiver {

/// One event as it is kept.
struct TimelineEvent {
    std::int64_t timestamp =
        0;                ///< milliseconds: of the Unix epoch, or of the device's uptime clock for touches
    std::string type;     ///< "UserInteraction", "SignalCaptured", ...
    std::string details;  ///< the details object as JSON text; empty when the event has none
};

/// The events of `text`, in their order. Refused, with the index of the event and what is wrong with it: what
/// is not a JSON array of events, keys that the event's type does not have, values of another type, another
/// chunk number than `chunkNumber`, and too much of anything.
std::expected<std::vector<TimelineEvent>, std::string> validateTimeline(std::string_view text,
                                                                        std::int64_t chunkNumber);

/// Longest timeline that is looked at, in bytes.
inline constexpr std::size_t longestTimeline = std::size_t{4} * 1024 * 1024;

}  // namespace mireth::receiver
