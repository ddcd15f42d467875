// Collects the coded frames of one video track and makes the file of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platforms/linux/media/H264Encoder.hpp"
#include "platforms/linux/media/Mp4Muxer.hpp"
#include "platforms/linux/media/PlanarConverter.hpp"
#include "platforms/linux/system/ScratchThread.hpp"

namespace mireth::platform {

/// Keeps everything in memory until `finish`; when it goes, that memory goes back to the system. One thread
/// at a time, beside the one on which the encoder lives.
class TrackRecorder {
  public:
    static std::expected<TrackRecorder, std::string> create(int width, int height, std::int32_t timescale,
                                                            std::int64_t defaultFrameDuration);
    TrackRecorder(TrackRecorder&&) = default;
    TrackRecorder& operator=(TrackRecorder&&) = delete;
    ~TrackRecorder();

    /// Codes a frame of native words 0xAARRGGBB shown from `time` on, in units of the time scale. Times
    /// begin at 0 or later and strictly increase.
    std::expected<void, std::string> append(const std::byte* pixels, std::size_t bytesPerRow,
                                            std::int64_t time);

    /// The MP4 file. Fails without a frame.
    std::expected<std::vector<std::byte>, std::string> finish();

  private:
    TrackRecorder(const Mp4VideoTrack& track, std::int64_t defaultFrameDuration);
    std::expected<void, std::string> makeEncoder();
    std::expected<void, std::string> checkTime(std::int64_t time) const;

    /// An encoder takes forty times the memory of the frames' planes, and is there for a moment.
    std::unique_ptr<ScratchThread> scratch_;
    PlanarConverter converter_;
    /// Made, used and dropped on the scratch thread.
    std::optional<H264Encoder> encoder_;
    Mp4VideoTrack track_;
    std::int64_t defaultFrameDuration_;
    std::vector<Mp4Sample> samples_;
};

}  // namespace mireth::platform
