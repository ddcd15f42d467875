// One finished chunk on its way to the upload.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "PrivateSide/Collection/Timeline/TimelineEvent.hpp"
#include "PrivateSide/Configuration/RemoteSessionInfo.hpp"

namespace mireth {

struct ChunkData {
    RemoteSessionInfo session;
    std::int64_t chunkNumber = 0;
    std::vector<TimelineEvent> timeline;
    /// The chunk's video.
    std::filesystem::path playbackURL;
    /// Milliseconds since the Unix epoch.
    std::int64_t chunkEndTimestampMillis = 0;
};

}  // namespace mireth
