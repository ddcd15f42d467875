// How a row of the session table becomes a record. Included by the SqliteStore .cpp files.
#pragma once

#include "sqlite/Database.hpp"
#include "store/Records.hpp"

namespace mireth::receiver {

inline constexpr const char* sessionColumns =
    "session.id, brandId, brandDc, projectId, isTestSession, startMillis, closedMillis";
inline constexpr const char* sumColumns =
    ", lastMillis, chunks, highestChunk, frames, bytes, durationMillis, events, logLines, taps, rageTaps,"
    " deadTaps, errorTaps, deviceModel, deviceSystem";
/// The first column after both.
inline constexpr int placeColumn = 21;

inline Session sessionIn(const Statement& row) {
    return {.id = row.text(0),
            .brandId = row.text(1),
            .brandDc = row.text(2),
            .projectId = row.text(3),
            .isTestSession = row.whole(4) != 0,
            .startMillis = row.whole(5),
            .closedMillis = row.isNull(6) ? std::nullopt : std::optional(row.whole(6))};
}

/// All but the screens.
inline SessionSummary summaryIn(const Statement& row) {
    return {.session = sessionIn(row),
            .lastMillis = row.whole(7),
            .chunks = row.whole(8),
            .missingChunks = row.whole(9) + 1 - row.whole(8),
            .frames = row.whole(10),
            .bytes = row.whole(11),
            .durationMillis = row.whole(12),
            .events = row.whole(13),
            .logLines = row.whole(14),
            .counts = {.taps = row.whole(15),
                       .rageTaps = row.whole(16),
                       .deadTaps = row.whole(17),
                       .errorTaps = row.whole(18)},
            .deviceModel = row.text(19),
            .deviceSystem = row.text(20),
            .screens = {}};
}

}  // namespace mireth::receiver
