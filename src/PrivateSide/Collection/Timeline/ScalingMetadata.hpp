// How a captured image is fitted into the video frame.
#pragma once

#include "MirethVex/Base/Geometry.hpp"

namespace mireth {

struct Margin {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    bool operator==(const Margin&) const = default;
};

struct ScalingMetadata {
    /// In frame units.
    Margin margin;
    Size originalSize;
    Size scaledSize;
    Size targetFrameSize;
    bool operator==(const ScalingMetadata&) const = default;

    /// Every field zero.
    static ScalingMetadata zero() { return {}; }
};

}  // namespace mireth
