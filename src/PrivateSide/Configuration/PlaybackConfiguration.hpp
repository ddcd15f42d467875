// How the screen is recorded: rate, chunk length, frame size and codec.
#pragma once

#include <cstdint>

#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Platform/AssetWriter.hpp"
#include "MirethVex/Platform/MainQueue.hpp"

namespace mireth {

/// A value type.
struct PlaybackConfiguration {
    /// Frames captured and encoded per second.
    std::int32_t fps = 2;
    /// Seconds of video per chunk.
    std::int64_t secondsPerChunk = 10;
    /// Longest recording, in minutes.
    std::int64_t maxRecordMinutes = 30;
    /// Units per second of all media time values.
    std::int32_t kTimescale = 600;
    /// Size of every video frame, in pixels.
    Size size{250, 500};
    platform::VideoCodec avCodecKey = platform::VideoCodec::h264;

    /// fps × secondsPerChunk. An overflow is a fatal error.
    std::int64_t framesPerChunk() const;
    /// How long one frame is shown: kTimescale / fps units, rounded toward zero. A zero fps and an overflow
    /// are fatal errors.
    platform::MediaTime frameDuration() const;
    /// When frame `frameNumber` of a chunk is shown, counted from the chunk's start.
    platform::MediaTime presentationTime(std::int64_t frameNumber) const;
    /// The number of chunks that the longest recording produces: (60 / secondsPerChunk) × maxRecordMinutes,
    /// in integers. A zero secondsPerChunk is a fatal error.
    std::int64_t maxNumberOfFiles() const;
};

/// The time between two captured frames: 1.0 / fps seconds.
platform::Seconds getSecondsDelayBasedOnFps(std::int32_t fps);

}  // namespace mireth
