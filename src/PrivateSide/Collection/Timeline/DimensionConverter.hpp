// Points to pixels.
#pragma once

namespace mireth {

struct DimensionConverter {
    /// Pixels per point of the screen.
    float scale = 1;

    float convertToPixel(float fromPoint) const { return fromPoint * scale; }
    double convertToPixel(double fromPoint) const { return fromPoint * static_cast<double>(scale); }
};

}  // namespace mireth
