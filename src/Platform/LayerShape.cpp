#include "Platform/LayerShape.hpp"

#include <cmath>

namespace mireth::platform {

double determinant(const AffineTransform& transform) {
    return transform.a * transform.d - transform.b * transform.c;
}

bool isUsable(const AffineTransform& transform) {
    const double size = determinant(transform);
    return std::isfinite(size) && size != 0 && std::isfinite(transform.tx) && std::isfinite(transform.ty);
}

bool isFinite(const Rect& rect) {
    return std::isfinite(rect.x) && std::isfinite(rect.y) && std::isfinite(rect.width) &&
           std::isfinite(rect.height);
}

CornerRadii cornerRadiiOf(const Layer& layer) {
    const auto& appearance = layer.appearance;
    const double radius = appearance.cornerRadius;
    if (!(radius > 0)) {
        return {};
    }
    const auto rounded = [&](CornerMask corner) {
        return (appearance.maskedCorners & corner) != 0 ? radius : 0.0;
    };
    return {rounded(topLeftCorner), rounded(topRightCorner), rounded(bottomRightCorner),
            rounded(bottomLeftCorner)};
}

AffineTransform sublayerSpaceOf(const Layer& layer) {
    const Rect& bounds = layer.geometry.bounds;
    AffineTransform space;
    if (layer.rendering.isGeometryFlipped) {
        space = {1, 0, 0, -1, 0, 2 * bounds.y + bounds.height};
    }
    if (layer.transform.sublayerTransform.isIdentity()) {
        return space;
    }
    const Point anchor{bounds.x + layer.geometry.anchorPoint.x * bounds.width,
                       bounds.y + layer.geometry.anchorPoint.y * bounds.height};
    return AffineTransform::translation(-anchor.x, -anchor.y)
        .concatenating(layer.transform.sublayerTransform.affine())
        .concatenating(AffineTransform::translation(anchor.x, anchor.y))
        .concatenating(space);
}

}  // namespace mireth::platform
