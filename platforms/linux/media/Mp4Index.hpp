// The index of an MP4 file of one video track. Private to this folder.
#pragma once

#include <cstdint>
#include <span>

#include "platforms/linux/media/Mp4Box.hpp"
#include "platforms/linux/media/Mp4Muxer.hpp"

namespace mireth::platform {

/// The box moov (ISO 14496-12). `sizes` are those of the samples in the file, where they lie one after the
/// other from `firstByte` on; its value does not change the index's own size. There is a sample.
Mp4Box mp4Index(const Mp4VideoTrack& track, std::span<const Mp4Sample> samples,
                std::span<const std::uint32_t> sizes, std::uint32_t firstByte);

}  // namespace mireth::platform
