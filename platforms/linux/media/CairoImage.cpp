#include "platforms/linux/media/CairoImage.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

#include "platforms/linux/media/CairoHandles.hpp"
#include "platforms/linux/media/CairoPath.hpp"

namespace mireth::platform {

namespace {

/// Cairo's image surfaces end here.
constexpr std::size_t maximumSide = 32'767;

/// Whole pixels of an image.
struct PixelArea {
    std::size_t x = 0;
    std::size_t y = 0;
    std::size_t width = 0;
    std::size_t height = 0;
};

/// A part of an image, in its pixels, and where it goes.
struct Placement {
    Rect part;
    Rect destination;
};

/// A surface on the image's own memory, which Cairo only reads.
CairoPattern patternOf(const Image& image, const PixelArea& area) {
    const std::uint32_t* first = image.pixels().data() + area.y * image.pixelWidth() + area.x;
    // A C interface without const.
    auto* bytes = reinterpret_cast<unsigned char*>(const_cast<std::uint32_t*>(first));
    const CairoSurface surface(cairo_image_surface_create_for_data(
        bytes, CAIRO_FORMAT_ARGB32, static_cast<int>(area.width), static_cast<int>(area.height),
        static_cast<int>(image.pixelWidth() * sizeof(std::uint32_t))));
    CairoPattern pattern(cairo_pattern_create_for_surface(surface.get()));
    return cairo_pattern_status(pattern.get()) == CAIRO_STATUS_SUCCESS ? std::move(pattern) : nullptr;
}

bool isDrawable(const Image& image) {
    return image.hasBitmap() && image.pixelWidth() <= maximumSide && image.pixelHeight() <= maximumSide;
}

/// One axis: cuts the source to 0…1 and shortens the destination with it.
bool cutToImage(double& source, double& sourceLength, double& place, double& length) {
    const double begin = std::max(source, 0.0);
    const double end = std::min(source + sourceLength, 1.0);
    if (!(end > begin)) {
        return false;
    }
    const double perUnit = length / sourceLength;
    if (begin != source || end != source + sourceLength) {
        place += (begin - source) * perUnit;
        length = (end - begin) * perUnit;
    }
    source = begin;
    sourceLength = end - begin;
    return std::isfinite(place) && length > 0 && std::isfinite(length);
}

std::optional<Placement> place(const Image& image, Rect source, Rect destination) {
    if (!(source.width > 0) || !(source.height > 0) ||
        !cutToImage(source.x, source.width, destination.x, destination.width) ||
        !cutToImage(source.y, source.height, destination.y, destination.height)) {
        return std::nullopt;
    }
    const auto width = static_cast<double>(image.pixelWidth());
    const auto height = static_cast<double>(image.pixelHeight());
    return Placement{{source.x * width, source.y * height, source.width * width, source.height * height},
                     destination};
}

/// The pixels that a part touches. A hair is not a touch.
PixelArea pixelsOf(const Rect& part, const Image& image) {
    constexpr double hair = 1e-6;
    const auto bound = [](double value, std::size_t limit) {
        return static_cast<std::size_t>(std::clamp(value, 0.0, static_cast<double>(limit)));
    };
    const std::size_t x =
        std::min(bound(std::floor(part.x + hair), image.pixelWidth()), image.pixelWidth() - 1);
    const std::size_t y =
        std::min(bound(std::floor(part.y + hair), image.pixelHeight()), image.pixelHeight() - 1);
    const std::size_t right = bound(std::ceil(part.x + part.width - hair), image.pixelWidth());
    const std::size_t bottom = bound(std::ceil(part.y + part.height - hair), image.pixelHeight());
    return {x, y, std::max(right, x + 1) - x, std::max(bottom, y + 1) - y};
}

cairo_filter_t filterFor(Interpolation interpolation, double shrink) {
    if (interpolation == Interpolation::nearest) {
        return CAIRO_FILTER_NEAREST;
    }
    // Bilinear looks at two pixels a side, which is enough down to about half the size and many times faster.
    return shrink > 2.0 ? CAIRO_FILTER_GOOD : CAIRO_FILTER_BILINEAR;
}

/// Shows one colour where a picture is magnified so far that Cairo's matrices cannot say it.
void fillWithPixel(cairo_t* cairo, const Image& image, const Placement& placement, const Rect& visible) {
    const Rect& whole = placement.destination;
    const double u = (visible.x + visible.width / 2 - whole.x) / whole.width;
    const double v = (visible.y + visible.height / 2 - whole.y) / whole.height;
    const PixelArea pixel = pixelsOf(
        {placement.part.x + u * placement.part.width, placement.part.y + v * placement.part.height, 0, 0},
        image);
    const std::uint32_t word = image.pixels()[pixel.y * image.pixelWidth() + pixel.x];
    const double alpha = (word >> 24U) / 255.0;
    const auto straight = [&](unsigned shift) {
        return alpha > 0 ? ((word >> shift) & 0xFFU) / 255.0 / alpha : 0.0;
    };
    setColor(cairo, {straight(16), straight(8), straight(0), alpha});
    cairo_rectangle(cairo, visible.x, visible.y, visible.width, visible.height);
    cairo_fill(cairo);
}

}  // namespace

void fillWithCairoPattern(cairo_t* cairo, const Rect& rect, const Image& tile) {
    const auto visible = visiblePart(cairo, rect);
    if (!isDrawable(tile) || !visible) {
        return;
    }
    const CairoPattern pattern = patternOf(tile, {0, 0, tile.pixelWidth(), tile.pixelHeight()});
    if (pattern == nullptr) {
        return;
    }
    cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_REPEAT);
    cairo_pattern_set_filter(pattern.get(), CAIRO_FILTER_NEAREST);
    cairo_set_source(cairo, pattern.get());
    cairo_rectangle(cairo, visible->x, visible->y, visible->width, visible->height);
    cairo_fill(cairo);
}

void drawCairoImage(cairo_t* cairo, const Image& image, const Rect& source, const Rect& destination,
                    Interpolation interpolation) {
    if (!isDrawable(image)) {
        return;
    }
    const auto placement = place(image, source, destination);
    if (!placement) {
        return;
    }
    const auto visible = visiblePart(cairo, placement->destination);
    if (!visible) {
        return;
    }
    const Rect& part = placement->part;
    const Rect& target = placement->destination;
    const double scaleX = part.width / target.width;
    const double scaleY = part.height / target.height;
    const Size unit = unitInPixels(cairo);
    const double shrinkX = scaleX / unit.width;
    const double shrinkY = scaleY / unit.height;
    // Cairo's image matrices have 16 bits on either side of the point.
    constexpr double smallest = 1e-3;
    constexpr double largest = 3e4;
    if (!(shrinkX < largest) || !(shrinkY < largest)) {
        return;
    }
    if (shrinkX < smallest || shrinkY < smallest) {
        fillWithPixel(cairo, image, *placement, *visible);
        return;
    }
    const PixelArea area = pixelsOf(part, image);
    const CairoPattern pattern = patternOf(image, area);
    if (pattern == nullptr) {
        return;
    }
    cairo_matrix_t toPixels;
    cairo_matrix_init(&toPixels, scaleX, 0, 0, scaleY,
                      part.x - static_cast<double>(area.x) - target.x * scaleX,
                      part.y - static_cast<double>(area.y) - target.y * scaleY);
    cairo_pattern_set_matrix(pattern.get(), &toPixels);
    cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
    cairo_pattern_set_filter(pattern.get(), filterFor(interpolation, std::max(shrinkX, shrinkY)));
    cairo_set_source(cairo, pattern.get());
    cairo_rectangle(cairo, visible->x, visible->y, visible->width, visible->height);
    cairo_fill(cairo);
}

}  // namespace mireth::platform
