#include "platforms/linux/media/CairoShadow.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

#include "platforms/linux/media/CairoHandles.hpp"
#include "platforms/linux/media/CairoPath.hpp"
#include "platforms/linux/media/GaussianBlur.hpp"

namespace mireth::platform {

namespace {

/// Blurs wider than this are made on a smaller mask: nobody sees the difference.
constexpr double finestSigma = 6;
/// Wider than any screen; keeps sizes finite.
constexpr double widestSigma = 2000;
/// Softer edges than this are what antialiasing gives anyway.
constexpr double sharpSigma = 0.3;
constexpr double maximumMaskPixels = 4'000'000;

/// Device pixels, whole.
struct Area {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    double width() const { return right - left; }
    double height() const { return bottom - top; }
    Area grownBy(double margin) const {
        return {left - margin, top - margin, right + margin, bottom + margin};
    }
};

Area deviceArea(cairo_t* cairo, const Rect& rect) {
    cairo_matrix_t matrix;
    cairo_get_matrix(cairo, &matrix);
    const AffineTransform toDevice{matrix.xx, matrix.yx, matrix.xy, matrix.yy, matrix.x0, matrix.y0};
    const Rect box = toDevice.boundingBox(rect);
    return {box.x, box.y, box.x + box.width, box.y + box.height};
}

Area deviceClip(cairo_t* cairo) {
    Area clip;
    cairo_save(cairo);
    cairo_identity_matrix(cairo);
    cairo_clip_extents(cairo, &clip.left, &clip.top, &clip.right, &clip.bottom);
    cairo_restore(cairo);
    return clip;
}

/// What of the outline can reach the clip, blurred; nothing when none of it can.
std::optional<Area> maskArea(cairo_t* cairo, const Rect& rect, double reach) {
    const Area shape = deviceArea(cairo, rect).grownBy(reach);
    const Area clip = deviceClip(cairo).grownBy(reach);
    const Area area{std::floor(std::max(shape.left, clip.left)), std::floor(std::max(shape.top, clip.top)),
                    std::ceil(std::min(shape.right, clip.right)),
                    std::ceil(std::min(shape.bottom, clip.bottom))};
    if (!(area.width() > 0) || !(area.height() > 0)) {
        return std::nullopt;
    }
    return area;
}

/// How many device pixels one side of a mask pixel covers.
double coarseness(const Area& area, double sigma) {
    double coarse = std::max(1.0, std::floor(sigma / finestSigma));
    while (area.width() * area.height() / (coarse * coarse) > maximumMaskPixels) {
        coarse *= 2;
    }
    return coarse;
}

/// The outline, drawn sharp, in a mask whose pixels are `coarse` device pixels wide.
CairoSurface drawOutline(cairo_t* cairo, const Rect& rect, const CornerRadii& radii, const Area& area,
                         double coarse) {
    CairoSurface mask(cairo_image_surface_create(CAIRO_FORMAT_A8,
                                                 static_cast<int>(std::ceil(area.width() / coarse)),
                                                 static_cast<int>(std::ceil(area.height() / coarse))));
    const CairoHandle context(cairo_create(mask.get()));
    cairo_matrix_t toDevice;
    cairo_get_matrix(cairo, &toDevice);
    cairo_scale(context.get(), 1 / coarse, 1 / coarse);
    cairo_translate(context.get(), -area.left, -area.top);
    cairo_transform(context.get(), &toDevice);
    addRoundedRect(context.get(), rect, radii);
    cairo_fill(context.get());
    const bool drawn = cairo_status(context.get()) == CAIRO_STATUS_SUCCESS;
    return drawn ? std::move(mask) : nullptr;
}

void blur(cairo_surface_t* surface, double sigma) {
    cairo_surface_flush(surface);
    const auto height = static_cast<std::size_t>(cairo_image_surface_get_height(surface));
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
    gaussianBlur({{cairo_image_surface_get_data(surface), stride * height},
                  static_cast<std::size_t>(cairo_image_surface_get_width(surface)),
                  height,
                  stride},
                 sigma);
    cairo_surface_mark_dirty(surface);
}

void paintThrough(cairo_t* cairo, cairo_surface_t* mask, const Area& area, double coarse,
                  const Color& color) {
    const CairoPattern pattern(cairo_pattern_create_for_surface(mask));
    cairo_matrix_t toMask;
    cairo_matrix_init_scale(&toMask, 1 / coarse, 1 / coarse);
    cairo_matrix_translate(&toMask, -area.left, -area.top);
    cairo_pattern_set_matrix(pattern.get(), &toMask);
    cairo_pattern_set_filter(pattern.get(), coarse > 1 ? CAIRO_FILTER_BILINEAR : CAIRO_FILTER_NEAREST);
    cairo_save(cairo);
    cairo_identity_matrix(cairo);
    setColor(cairo, color);
    cairo_mask(cairo, pattern.get());
    cairo_restore(cairo);
}

}  // namespace

void drawCairoShadow(cairo_t* cairo, const Rect& rect, const CornerRadii& radii, const Color& color,
                     double radius) {
    const auto visible = visiblePart(cairo, rect);
    if (!visible || !(clampedToUnit(color.alpha) > 0)) {
        return;
    }
    const Size unit = unitInPixels(cairo);
    const double wanted = radius * std::sqrt(unit.width * unit.height);
    const double sigma = wanted > 0 ? std::min(wanted, widestSigma) : 0;
    if (sigma < sharpSigma) {
        setColor(cairo, color);
        addRoundedRect(cairo, *visible, radii);
        cairo_fill(cairo);
        return;
    }
    const auto area = maskArea(cairo, *visible, std::ceil(3 * sigma) + 1);
    if (!area) {
        return;
    }
    const double coarse = coarseness(*area, sigma);
    const CairoSurface mask = drawOutline(cairo, *visible, radii, *area, coarse);
    if (mask == nullptr) {
        return;
    }
    blur(mask.get(), sigma / coarse);
    paintThrough(cairo, mask.get(), *area, coarse, color);
}

}  // namespace mireth::platform
