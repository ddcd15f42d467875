#include "platforms/linux/media/DeviceRect.hpp"

#include <cmath>

namespace mireth::platform {

namespace {

constexpr int unitsAPixel = 256;
/// What sums and products leave of a length that was even.
constexpr double hair = 1e-6;
/// Beyond any surface.
constexpr double farthest = 1 << 20;

std::optional<int> inUnits(double coordinate) {
    const double units = coordinate * unitsAPixel;
    const double nearest = std::nearbyint(units);
    if (!(std::abs(units - nearest) < hair) || std::abs(coordinate) > farthest) {
        return std::nullopt;
    }
    return static_cast<int>(nearest);
}

}  // namespace

std::optional<DeviceRect> DeviceRect::inSubpixels(const Rect& rect, const cairo_matrix_t& toDevice) {
    if (toDevice.xy != 0 || toDevice.yx != 0 || !(toDevice.xx > 0) || toDevice.yy != toDevice.xx) {
        return std::nullopt;
    }
    const auto left = inUnits(rect.x * toDevice.xx + toDevice.x0);
    const auto top = inUnits(rect.y * toDevice.yy + toDevice.y0);
    const auto right = inUnits((rect.x + rect.width) * toDevice.xx + toDevice.x0);
    const auto bottom = inUnits((rect.y + rect.height) * toDevice.yy + toDevice.y0);
    if (!left || !top || !right || !bottom) {
        return std::nullopt;
    }
    return DeviceRect{*left, *top, *right, *bottom};
}

std::optional<DeviceRect> DeviceRect::inPixels(const Rect& rect, const cairo_matrix_t& toDevice) {
    const auto units = inSubpixels(rect, toDevice);
    const auto isWhole = [](int side) { return side % unitsAPixel == 0; };
    if (!units || !isWhole(units->left) || !isWhole(units->top) || !isWhole(units->right) ||
        !isWhole(units->bottom)) {
        return std::nullopt;
    }
    return DeviceRect{units->left / unitsAPixel, units->top / unitsAPixel, units->right / unitsAPixel,
                      units->bottom / unitsAPixel};
}

}  // namespace mireth::platform
