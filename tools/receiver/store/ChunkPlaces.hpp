// Where each chunk of a session stands in its replay: every number takes as long as clients make a chunk,
// whether it is missing, short or long. The page, the lists and the exported video follow this one rule.
#pragma once

#include <algorithm>
#include <cstdint>

namespace mireth::receiver {

/// What every number takes, in milliseconds.
inline constexpr std::int64_t placeMillis = 10'000;

/// Where the chunk of this number begins, in milliseconds.
constexpr std::int64_t chunkPlace(std::int64_t number) {
    return number * placeMillis;
}

/// Where it ends: earlier than the next begins when it is short, never later.
constexpr std::int64_t chunkEnd(std::int64_t number, std::int64_t durationMillis) {
    return chunkPlace(number) + std::min(durationMillis, placeMillis);
}

}  // namespace mireth::receiver
