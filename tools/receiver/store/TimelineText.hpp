// The timeline of a chunk as text: the form in which it is kept and shown.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "wire/TimelineValidator.hpp"

namespace mireth::receiver {

/// The JSON array that the chunk was uploaded with, without white space. `events` must have passed
/// validateTimeline.
std::string timelineText(const std::vector<TimelineEvent>& events, std::int64_t chunkNumber);

}  // namespace mireth::receiver
