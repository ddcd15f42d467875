// Where a layer lies in its superlayer.
#include "MirethVex/Platform/Layer.hpp"

#include <cmath>
#include <utility>

namespace mireth::platform {

namespace {

/// The anchor point in the layer's own coordinates.
Point anchorInBounds(const LayerGeometry& geometry) {
    return {geometry.bounds.x + geometry.anchorPoint.x * geometry.bounds.width,
            geometry.bounds.y + geometry.anchorPoint.y * geometry.bounds.height};
}

/// The same area with a width and a height that are not negative.
Rect standardized(const Rect& rect) {
    return {rect.width < 0 ? rect.x + rect.width : rect.x, rect.height < 0 ? rect.y + rect.height : rect.y,
            std::abs(rect.width), std::abs(rect.height)};
}

}  // namespace

void Layer::addSublayer(std::shared_ptr<Layer> sublayer) {
    if (sublayer != nullptr) {
        sublayers_.push_back(std::move(sublayer));
    }
}

AffineTransform Layer::transformToSuperlayer() const {
    const Point anchor = anchorInBounds(geometry);
    const auto& position = geometry.position;
    if (transform.transform.isIdentity()) {
        // Most layers, and exact: no product of matrices to round.
        return AffineTransform::translation(position.x - anchor.x, position.y - anchor.y);
    }
    return AffineTransform::translation(-anchor.x, -anchor.y)
        .concatenating(transform.transform.affine())
        .concatenating(AffineTransform::translation(position.x, position.y));
}

Rect Layer::frame() const {
    const Rect& bounds = geometry.bounds;
    if (transform.transform.isIdentity()) {
        return {geometry.position.x - geometry.anchorPoint.x * bounds.width,
                geometry.position.y - geometry.anchorPoint.y * bounds.height, bounds.width, bounds.height};
    }
    return transformToSuperlayer().boundingBox(bounds);
}

void Layer::setFrame(const Rect& frame) {
    const Rect area = standardized(frame);
    geometry.bounds.width = area.width;
    geometry.bounds.height = area.height;
    geometry.position = {area.x + geometry.anchorPoint.x * area.width,
                         area.y + geometry.anchorPoint.y * area.height};
}

}  // namespace mireth::platform
