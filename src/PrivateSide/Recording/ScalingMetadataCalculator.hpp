// Fits a captured image into the video frame; used for frames and for the places of taps.
#pragma once

#include "MirethVex/Base/Geometry.hpp"
#include "PrivateSide/Collection/Timeline/ScalingMetadata.hpp"

namespace mireth {

class ScalingMetadataCalculator {
  public:
    /// The largest size of the image's shape that the target holds, centred, not rounded. All zero for an
    /// image without a width or a height. Any thread.
    static ScalingMetadata calculateScalingMetadata(Size imageOriginalSize, Size targetSize);
};

}  // namespace mireth
