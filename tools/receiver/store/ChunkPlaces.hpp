// Where each chunk of a session stands in its replay, those that are missing keeping their time. The page,
// the list and the exported video follow the same rule.
#pragma once

#include <cstdint>
#include <vector>

#include "store/Records.hpp"

namespace mireth::receiver {

/// What a chunk that is missing is taken to last: as long as clients make them.
inline constexpr std::int64_t missingChunkMillis = 10'000;

/// The beginning of each chunk in milliseconds; `chunks` are by number.
inline std::vector<std::int64_t> chunkPlaces(const std::vector<Chunk>& chunks) {
    std::vector<std::int64_t> places;
    std::int64_t at = 0;
    std::int64_t expected = 0;
    for (const auto& chunk : chunks) {
        at += (chunk.number - expected) * missingChunkMillis;
        places.push_back(at);
        at += chunk.durationMillis;
        expected = chunk.number + 1;
    }
    return places;
}

/// How long the whole replay is.
inline std::int64_t replayMillis(const SessionSummary& summary) {
    return summary.durationMillis + summary.missingChunks * missingChunkMillis;
}

}  // namespace mireth::receiver
