#include "MirethVex/Base/Geometry.hpp"

#include <algorithm>
#include <cmath>

namespace mireth {

AffineTransform AffineTransform::rotation(double radians) {
    const double sine = std::sin(radians);
    const double cosine = std::cos(radians);
    return {cosine, sine, -sine, cosine, 0, 0};
}

AffineTransform AffineTransform::concatenating(const AffineTransform& next) const {
    return {a * next.a + b * next.c,
            a * next.b + b * next.d,
            c * next.a + d * next.c,
            c * next.b + d * next.d,
            tx * next.a + ty * next.c + next.tx,
            tx * next.b + ty * next.d + next.ty};
}

std::optional<AffineTransform> AffineTransform::inverted() const {
    const double determinant = a * d - b * c;
    const AffineTransform inverse{d / determinant,
                                  -b / determinant,
                                  -c / determinant,
                                  a / determinant,
                                  (c * ty - d * tx) / determinant,
                                  (b * tx - a * ty) / determinant};
    const bool isFinite =
        std::ranges::all_of(std::array{inverse.a, inverse.b, inverse.c, inverse.d, inverse.tx, inverse.ty},
                            [](double value) { return std::isfinite(value); });
    // Beside an infinite entry of this transform the inverse may come out as zeros.
    return isFinite && determinant != 0 && std::isfinite(determinant) ? std::optional(inverse) : std::nullopt;
}

Rect AffineTransform::boundingBox(const Rect& rect) const {
    const Point corners[] = {apply({rect.x, rect.y}), apply({rect.x + rect.width, rect.y}),
                             apply({rect.x, rect.y + rect.height}),
                             apply({rect.x + rect.width, rect.y + rect.height})};
    const auto [left, right] = std::ranges::minmax(corners, {}, &Point::x);
    const auto [top, bottom] = std::ranges::minmax(corners, {}, &Point::y);
    return {left.x, top.y, right.x - left.x, bottom.y - top.y};
}

Transform3D Transform3D::fromAffine(const AffineTransform& transform) {
    Transform3D result;
    result.m[0] = {transform.a, transform.b, 0, 0};
    result.m[1] = {transform.c, transform.d, 0, 0};
    result.m[3] = {transform.tx, transform.ty, 0, 1};
    return result;
}

}  // namespace mireth
