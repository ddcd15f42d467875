// How the pictures of a track are coded, as an MP4 file says it. Private to this folder.
#pragma once

#include "platforms/linux/media/Mp4Box.hpp"
#include "platforms/linux/media/Mp4Muxer.hpp"

namespace mireth::platform {

/// The box avc1 (ISO 14496-15). The track has a sequence parameter set.
Mp4Box mp4SampleEntry(const Mp4VideoTrack& track);

}  // namespace mireth::platform
