// Puts coded pictures into an MP4 file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <span>
#include <string>
#include <vector>

namespace mireth::platform {

/// The one video track of a file.
struct Mp4VideoTrack {
    int width = 0;
    int height = 0;
    /// Units per second of the track and of the movie.
    std::int32_t timescale = 1;
    /// Sequence and picture parameter sets (ITU-T H.264 Annex B).
    std::span<const std::byte> parameterSets;
};

/// One picture of the track, in units of its time scale.
struct Mp4Sample {
    std::vector<std::byte> bytes;
    std::int64_t time = 0;
    std::int64_t duration = 0;
    bool isKeyFrame = false;
};

/// The whole file (ISO 14496-12 and -15, sample entry avc1), with the index before the pictures, so that a
/// browser can play it while it loads. The same samples give the same bytes. Any thread.
std::expected<std::vector<std::byte>, std::string> muxMp4(const Mp4VideoTrack& track,
                                                          std::span<const Mp4Sample> samples);

}  // namespace mireth::platform
