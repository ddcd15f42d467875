// Reads back a video file the way a player would. For tests of what writes them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "MirethVex/Platform/Image.hpp"

namespace mireth::tests {

struct VideoPacket {
    std::int64_t time = 0;
    std::int64_t duration = 0;
    bool isKeyFrame = false;
    bool operator==(const VideoPacket&) const = default;
};

/// What a file says about itself, and what its frames look like.
struct DecodedVideo {
    std::size_t streams = 0;
    std::string codec;
    std::string sampleEntry;
    std::string pixelFormat;
    int width = 0;
    int height = 0;
    /// Units per second of the track.
    int timescale = 0;
    /// In units of the track.
    std::int64_t duration = 0;
    /// In microseconds.
    std::int64_t fileDuration = 0;
    std::string range;
    std::string primaries;
    std::string transfer;
    std::string matrix;
    std::vector<VideoPacket> packets;
    /// The kinds of NAL unit (ITU-T H.264 table 7-1) in all packets, in order.
    std::vector<int> nalUnitTypes;
    /// In order of presentation, opaque.
    std::vector<platform::Image> frames;
    /// The decoder's complaints.
    int errors = 0;
};

/// Nothing sensible in it when `file` is no video.
DecodedVideo decodeVideo(const std::string& file);

}  // namespace mireth::tests
