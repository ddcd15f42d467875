// What the list of sessions shows and finds of a timeline: counts, screens, error messages, the device.
// Made once, when a chunk is kept.
#pragma once

#include <string>
#include <vector>

#include "store/Records.hpp"
#include "wire/TimelineValidator.hpp"

namespace mireth::receiver {

/// A text by which a session can be found.
struct FoundText {
    enum class Kind { screen, error };
    Kind kind = Kind::screen;
    std::string value;  ///< UTF-8, at most 256 bytes of what the client sent
};

struct TimelineSummary {
    SignalCounts counts = {};
    std::vector<FoundText> texts;  ///< each once, in the order of the timeline
    std::string deviceModel;       ///< empty when the timeline does not name it
    std::string deviceSystem;
};

/// `events` must have passed validateTimeline.
TimelineSummary summarise(const std::vector<TimelineEvent>& events);

/// `text` cut after at most `most` bytes, never within a character.
std::string cutText(const std::string& text, std::size_t most);

}  // namespace mireth::receiver
