// A captured image on its way into the video.
#pragma once

#include "MirethVex/Platform/Image.hpp"
#include "PrivateSide/Collection/Timeline/ScalingMetadata.hpp"

namespace mireth {

/// A value; the image's bitmap is shared.
struct Frame {
    platform::Image image;
    /// Where the image goes in the video frame.
    ScalingMetadata scalingMetadata;
};

}  // namespace mireth
