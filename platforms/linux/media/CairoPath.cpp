#include "platforms/linux/media/CairoPath.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace mireth::platform {

namespace {

/// How far beyond the clip a shape is followed. Cairo's coordinates end at 2^23 pixels.
constexpr double neighbourhood = 8192;

CornerRadii reducedBy(const CornerRadii& radii, double width) {
    CornerRadii inner = radii;
    for (double& radius : inner) {
        radius = std::max(0.0, radius - width);
    }
    return inner;
}

}  // namespace

double fittedRadius(double radius, const Rect& rect) {
    return radius > 0 ? std::min({radius, rect.width / 2, rect.height / 2}) : 0;
}

double clampedToUnit(double value) {
    return value >= 0 ? std::min(value, 1.0) : 0.0;
}

void setColor(cairo_t* cairo, const Color& color) {
    cairo_set_source_rgba(cairo, clampedToUnit(color.red), clampedToUnit(color.green),
                          clampedToUnit(color.blue), clampedToUnit(color.alpha));
}

Size unitInPixels(cairo_t* cairo) {
    cairo_matrix_t matrix;
    cairo_get_matrix(cairo, &matrix);
    return {std::hypot(matrix.xx, matrix.yx), std::hypot(matrix.xy, matrix.yy)};
}

std::optional<Rect> visiblePart(cairo_t* cairo, const Rect& rect) {
    if (!(rect.width > 0) || !(rect.height > 0) || !std::isfinite(rect.x) || !std::isfinite(rect.y)) {
        return std::nullopt;
    }
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    cairo_clip_extents(cairo, &left, &top, &right, &bottom);
    const Size unit = unitInPixels(cairo);
    const double marginX = neighbourhood / unit.width;
    const double marginY = neighbourhood / unit.height;
    const double x0 = std::max(rect.x, left - marginX);
    const double y0 = std::max(rect.y, top - marginY);
    const double x1 = std::min(rect.x + rect.width, right + marginX);
    const double y1 = std::min(rect.y + rect.height, bottom + marginY);
    if (!(right > left) || !(bottom > top) || !(x1 > x0) || !(y1 > y0)) {
        return std::nullopt;
    }
    // Untouched sides stay exactly as they were given.
    const bool fitsAcross = x0 == rect.x && x1 == rect.x + rect.width;
    const bool fitsDown = y0 == rect.y && y1 == rect.y + rect.height;
    return Rect{x0, y0, fitsAcross ? rect.width : x1 - x0, fitsDown ? rect.height : y1 - y0};
}

void addRoundedRect(cairo_t* cairo, const Rect& rect, const CornerRadii& radii) {
    const double topLeft = fittedRadius(radii[0], rect);
    const double topRight = fittedRadius(radii[1], rect);
    const double bottomRight = fittedRadius(radii[2], rect);
    const double bottomLeft = fittedRadius(radii[3], rect);
    if (topLeft + topRight + bottomRight + bottomLeft == 0) {
        cairo_rectangle(cairo, rect.x, rect.y, rect.width, rect.height);
        return;
    }
    constexpr double quarter = std::numbers::pi / 2;
    const double right = rect.x + rect.width;
    const double bottom = rect.y + rect.height;
    cairo_new_sub_path(cairo);
    cairo_arc(cairo, rect.x + topLeft, rect.y + topLeft, topLeft, 2 * quarter, 3 * quarter);
    cairo_arc(cairo, right - topRight, rect.y + topRight, topRight, -quarter, 0);
    cairo_arc(cairo, right - bottomRight, bottom - bottomRight, bottomRight, 0, quarter);
    cairo_arc(cairo, rect.x + bottomLeft, bottom - bottomLeft, bottomLeft, quarter, 2 * quarter);
    cairo_close_path(cairo);
}

void fillRing(cairo_t* cairo, const Rect& rect, const CornerRadii& radii, double width) {
    addRoundedRect(cairo, rect, radii);
    const Rect inner{rect.x + width, rect.y + width, rect.width - 2 * width, rect.height - 2 * width};
    if (inner.width > 0 && inner.height > 0) {
        // A ring rather than a stroke: it stays inside at every corner.
        CornerRadii fitted = radii;
        for (double& radius : fitted) {
            radius = std::min({radius, rect.width / 2, rect.height / 2});
        }
        addRoundedRect(cairo, inner, reducedBy(fitted, width));
        cairo_set_fill_rule(cairo, CAIRO_FILL_RULE_EVEN_ODD);
    }
    cairo_fill(cairo);
    cairo_set_fill_rule(cairo, CAIRO_FILL_RULE_WINDING);
}

}  // namespace mireth::platform
