// Rectangles on the pixels of a surface. Private to this folder.
#pragma once

#include <cairo.h>

#include <algorithm>
#include <optional>

#include "MirethVex/Base/Geometry.hpp"

namespace mireth::platform {

/// Whole pixels.
struct DeviceRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int width() const { return right - left; }
    int height() const { return bottom - top; }
    bool isEmpty() const { return width() <= 0 || height() <= 0; }

    DeviceRect intersected(const DeviceRect& other) const {
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                std::min(bottom, other.bottom)};
    }

    /// The same in 256ths of a pixel, the unit of Cairo's coordinates. Nothing for one that is turned, has
    /// sides between two such units, or is far away.
    static std::optional<DeviceRect> inSubpixels(const Rect& rect, const cairo_matrix_t& toDevice);
    /// Nothing for one that covers parts of pixels, either.
    static std::optional<DeviceRect> inPixels(const Rect& rect, const cairo_matrix_t& toDevice);
};

}  // namespace mireth::platform
