#include "platforms/linux/media/BlockCoverage.hpp"

#include <algorithm>
#include <cmath>
#include <new>

#include "platforms/linux/media/CairoHandles.hpp"
#include "platforms/linux/media/CairoPath.hpp"

namespace mireth::platform {

namespace {

double ofPixel(std::uint8_t fraction) {
    return fraction / 256.0;
}

/// How much of the last pixel a side leaves free.
double restOfPixel(std::uint8_t fraction) {
    return fraction == 0 ? 0 : 1 - ofPixel(fraction);
}

/// Its alpha; the sides are `side` pixels long, in part or in full.
CairoSurface drawSmallest(const BlockShape& shape, int side) {
    CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_A8, side, side));
    const CairoHandle cairo(cairo_create(surface.get()));
    const double x = ofPixel(shape.left);
    const double y = ofPixel(shape.top);
    const Rect rect{x, y, side - restOfPixel(shape.right) - x, side - restOfPixel(shape.bottom) - y};
    CornerRadii radii{};
    radii.fill(shape.radius);
    if (shape.border > 0) {
        fillRing(cairo.get(), rect, radii, shape.border);
    } else {
        addRoundedRect(cairo.get(), rect, radii);
        cairo_fill(cairo.get());
    }
    cairo_surface_flush(surface.get());
    return surface;
}

}  // namespace

int BlockCoverage::marginOf(const BlockShape& shape) {
    const double reach = std::max(shape.radius, shape.border);
    const double inset = std::max(
        {ofPixel(shape.left), ofPixel(shape.top), restOfPixel(shape.right), restOfPixel(shape.bottom)});
    return static_cast<int>(std::ceil(inset + reach));
}

BlockCoverage::BlockCoverage(const BlockShape& shape) : margin_(marginOf(shape)) {
    const int side = 2 * margin_ + 1;
    const CairoSurface smallest = drawSmallest(shape, side);
    const unsigned char* const pixels = cairo_image_surface_get_data(smallest.get());
    if (pixels == nullptr) {
        throw std::bad_alloc();
    }
    const std::ptrdiff_t stride = cairo_image_surface_get_stride(smallest.get());
    for (int row = 0; row < side; ++row) {
        const unsigned char* const first = pixels + row * stride;
        coverage_.insert(coverage_.end(), first, first + side);
    }
}

}  // namespace mireth::platform
