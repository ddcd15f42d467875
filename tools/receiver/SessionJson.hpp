// The JSON forms of the viewing API; docs/receiver-api.md describes them. Used by ViewingApi.
#pragma once

#include <cstdint>
#include <string>

#include "Records.hpp"
#include "SessionQuery.hpp"

namespace mireth::receiver {

std::string pageJson(const SessionPage& page);
std::string facetsJson(const Facets& facets);
std::string replayJson(const SessionContents& contents);
/// The timeline alone: the events of all chunks in one array.
std::string timelineJson(const SessionContents& contents);

/// How long the replay is: missing chunks keep their place.
std::int64_t replayMillis(const SessionSummary& summary);

/// What a chunk that is missing is taken to last: as long as clients make them.
inline constexpr std::int64_t missingChunkMillis = 10'000;

}  // namespace mireth::receiver
