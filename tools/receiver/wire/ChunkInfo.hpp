// The description that comes with an uploaded chunk, as read from its JSON part.
#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace mireth::receiver {

struct ChunkInfo {
    std::string brandId;
    std::string brandDc;
    std::string projectId;
    std::string sessionId;
    std::int64_t chunkNumber = 0;     ///< from 0
    std::int64_t chunkTimestamp = 0;  ///< end of the chunk, milliseconds since the Unix epoch
};

/// More than a session can have; keeps sums over missing chunks within their integers.
inline constexpr std::int64_t highestChunkNumber = 999'999;

/// Longest chunk information that is looked at, in bytes.
inline constexpr std::size_t longestChunkInfo = std::size_t{16} * 1024;

/// Reads `text`; the error names the key that is missing, unknown or of the wrong type.
std::expected<ChunkInfo, std::string> readChunkInfo(std::string_view text);

}  // namespace mireth::receiver
