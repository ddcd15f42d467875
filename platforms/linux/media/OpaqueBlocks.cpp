#include "platforms/linux/media/OpaqueBlocks.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <span>
#include <utility>

#include "platforms/linux/media/CairoPath.hpp"

namespace mireth::platform {

namespace {

constexpr std::uint32_t opaque = 0xFF000000U;

/// As Cairo rounds colours: down to eight bits, from sixteen.
std::uint32_t pixelOf(const Color& color) {
    const auto bits = [](double value) {
        return std::min(static_cast<std::uint32_t>(clampedToUnit(value) * 65536), 0xFFFFU) >> 8U;
    };
    return opaque | bits(color.red) << 16U | bits(color.green) << 8U | bits(color.blue);
}

/// Two of a pixel's four bytes, each times `part` of 255.
constexpr std::uint32_t twoBytes = 0x00FF00FFU;
constexpr std::uint32_t scaled(std::uint32_t bytes, std::uint32_t part) {
    const std::uint32_t product = bytes * part + 0x007F007FU;
    return ((product + ((product >> 8U) & twoBytes)) >> 8U) & twoBytes;
}

/// `over` where the pixel is covered and `under` where it is not.
constexpr std::uint32_t mixed(std::uint32_t over, std::uint32_t under, std::uint32_t coverage) {
    const std::uint32_t rest = 255 - coverage;
    const std::uint32_t low = scaled(over & twoBytes, coverage) + scaled(under & twoBytes, rest);
    const std::uint32_t high =
        scaled((over >> 8U) & twoBytes, coverage) + scaled((under >> 8U) & twoBytes, rest);
    return low | high << 8U;
}

/// `pixels` where they are covered.
void mix(std::uint32_t* pixels, std::span<const std::uint8_t> coverage, std::uint32_t pixel) {
    for (const std::uint8_t part : coverage) {
        *pixels = mixed(pixel, *pixels, part);
        ++pixels;
    }
}

void fill(std::uint32_t* pixels, int count, std::uint8_t coverage, std::uint32_t pixel) {
    if (coverage == 255) {
        std::fill_n(pixels, count, pixel);
    } else if (coverage > 0) {
        std::for_each_n(pixels, count, [&](std::uint32_t& under) { under = mixed(pixel, under, coverage); });
    }
}

/// A row of the smallest block drawn out to `width` pixels, of which those from `begin` to `end` are shown.
/// `first` is the first of all, shown or not.
void drawRow(std::uint32_t* first, int width, int begin, int end, std::span<const std::uint8_t> coverage,
             std::uint32_t pixel) {
    const int margin = static_cast<int>(coverage.size() / 2);
    const auto part = [&](int from, int to, int skipped) {
        const int left = std::max(from, begin);
        const int right = std::min(to, end);
        if (left < right) {
            mix(first + left,
                coverage.subspan(static_cast<std::size_t>(left - skipped),
                                 static_cast<std::size_t>(right - left)),
                pixel);
        }
    };
    part(0, margin, 0);
    const int middle = std::max(margin, begin);
    fill(first + middle, std::min(width - margin, end) - middle, coverage[static_cast<std::size_t>(margin)],
         pixel);
    part(width - margin, width, width - static_cast<int>(coverage.size()));
}

}  // namespace

OpaqueBlocks::OpaqueBlocks(cairo_surface_t* surface, std::shared_ptr<BlockCoverages> coverages)
    : surface_(surface), coverages_(std::move(coverages)) {
    const bool isImage = cairo_surface_get_type(surface) == CAIRO_SURFACE_TYPE_IMAGE;
    const auto format = isImage ? cairo_image_surface_get_format(surface) : CAIRO_FORMAT_INVALID;
    if (format == CAIRO_FORMAT_ARGB32 || format == CAIRO_FORMAT_RGB24) {
        area_ = {0, 0, cairo_image_surface_get_width(surface), cairo_image_surface_get_height(surface)};
    }
}

bool OpaqueBlocks::draw(const Block& block, const cairo_matrix_t& toDevice, const DeviceRect& clip) {
    const auto units = DeviceRect::inSubpixels(block.rect, toDevice);
    const auto& radii = block.radii;
    const bool isAlike = std::ranges::adjacent_find(radii, std::not_equal_to()) == radii.end();
    if (!units || !isAlike || !(block.color.alpha >= 1)) {
        return false;
    }
    constexpr unsigned pixelBits = 8;
    constexpr int pastPixel = 255;
    const DeviceRect pixels{units->left >> pixelBits, units->top >> pixelBits,
                            (units->right + pastPixel) >> pixelBits,
                            (units->bottom + pastPixel) >> pixelBits};
    BlockShape shape;
    shape.left = static_cast<std::uint8_t>(units->left);
    shape.top = static_cast<std::uint8_t>(units->top);
    shape.right = static_cast<std::uint8_t>(units->right);
    shape.bottom = static_cast<std::uint8_t>(units->bottom);
    shape.radius = fittedRadius(radii[0], block.rect) * toDevice.xx;
    shape.border = block.border * toDevice.xx;
    constexpr double largestCorner = 64;
    if (!(std::max(shape.radius, shape.border) <= largestCorner) ||
        2 * BlockCoverage::marginOf(shape) > std::min(pixels.width(), pixels.height())) {
        return false;
    }
    const DeviceRect shown = pixels.intersected(clip);
    if (shown.isEmpty()) {
        return true;
    }
    const BlockCoverage* const coverage = coverages_->find(shape);
    if (coverage != nullptr) {
        drawRows(pixels, shown, *coverage, pixelOf(block.color));
    }
    return coverage != nullptr;
}

void OpaqueBlocks::drawRows(const DeviceRect& block, const DeviceRect& shown, const BlockCoverage& coverage,
                            std::uint32_t pixel) {
    cairo_surface_flush(surface_);
    unsigned char* const bytes = cairo_image_surface_get_data(surface_);
    const std::ptrdiff_t stride = cairo_image_surface_get_stride(surface_);
    const int margin = coverage.margin();
    for (int y = shown.top; y < shown.bottom; ++y) {
        const int fromTop = y - block.top;
        const int fromBottom = block.bottom - 1 - y;
        const int row = fromTop < margin ? fromTop : fromBottom < margin ? 2 * margin - fromBottom : margin;
        auto* const first = reinterpret_cast<std::uint32_t*>(bytes + y * stride) + block.left;
        drawRow(first, block.width(), shown.left - block.left, shown.right - block.left, coverage.row(row),
                pixel);
    }
    cairo_surface_mark_dirty(surface_);
}

}  // namespace mireth::platform
