// Collects the coded frames of one video track and makes the file of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <string>
#include <vector>

#include "platforms/linux/media/H264Encoder.hpp"
#include "platforms/linux/media/Mp4Muxer.hpp"
#include "platforms/linux/media/PlanarConverter.hpp"

namespace mireth::platform {

/// Keeps everything in memory until `finish`. One thread at a time.
class TrackRecorder {
  public:
    static std::expected<TrackRecorder, std::string> create(int width, int height, std::int32_t timescale,
                                                            std::int64_t defaultFrameDuration);

    /// Codes a frame of native words 0xAARRGGBB shown from `time` on, in units of the time scale. Times
    /// begin at 0 or later and strictly increase.
    std::expected<void, std::string> append(const std::byte* pixels, std::size_t bytesPerRow,
                                            std::int64_t time);

    /// The MP4 file. Fails without a frame.
    std::expected<std::vector<std::byte>, std::string> finish();

  private:
    TrackRecorder(H264Encoder encoder, Mp4VideoTrack track, std::int64_t defaultFrameDuration);
    std::expected<void, std::string> checkTime(std::int64_t time) const;

    PlanarConverter converter_;
    H264Encoder encoder_;
    Mp4VideoTrack track_;
    std::int64_t defaultFrameDuration_;
    std::vector<Mp4Sample> samples_;
};

}  // namespace mireth::platform
