#include "Platform/LayerExtent.hpp"

#include <algorithm>
#include <cstddef>

#include "Platform/LayerContents.hpp"
#include "Platform/LayerShape.hpp"

namespace mireth::platform {

namespace {

/// The walk costs less than the picture it makes smaller; nested groups repeat it.
constexpr std::size_t maximumLayers = 256;

Rect united(const Rect& left, const Rect& right) {
    const double x = std::min(left.x, right.x);
    const double y = std::min(left.y, right.y);
    return {x, y, std::max(left.x + left.width, right.x + right.width) - x,
            std::max(left.y + left.height, right.y + right.height) - y};
}

Rect shadowExtent(const Layer& layer) {
    const auto& appearance = layer.appearance;
    const Rect& rect = appearance.shadowPath ? appearance.shadowPath->rect : layer.geometry.bounds;
    // A blur ends three standard deviations out.
    const double reach = 3 * std::max(0.0, appearance.shadowRadius);
    return {rect.x + appearance.shadowOffset.width - reach, rect.y + appearance.shadowOffset.height - reach,
            rect.width + 2 * reach, rect.height + 2 * reach};
}

std::optional<Rect> walk(const Layer& layer, std::size_t& layersLeft) {
    if (layersLeft == 0) {
        return std::nullopt;
    }
    --layersLeft;
    Rect extent = layer.geometry.bounds;
    if (layer.appearance.masksToBounds) {
        return extent;
    }
    if (layer.appearance.shadowOpacity > 0) {
        extent = united(extent, shadowExtent(layer));
    }
    if (layer.content.contents.hasBitmap()) {
        extent = united(extent, contentsPlace(layer));
    }
    const AffineTransform space = sublayerSpaceOf(layer);
    for (const auto& sublayer : layer.sublayers()) {
        if (sublayer->appearance.hidden) {
            continue;
        }
        const auto inside = walk(*sublayer, layersLeft);
        if (!inside) {
            return std::nullopt;
        }
        const auto toSuperlayer = sublayer->transformToSuperlayer().concatenating(space);
        if (isUsable(toSuperlayer)) {
            extent = united(extent, toSuperlayer.boundingBox(*inside));
        }
    }
    return extent;
}

}  // namespace

std::optional<Rect> extentOf(const Layer& layer) {
    std::size_t layersLeft = maximumLayers;
    const auto extent = walk(layer, layersLeft);
    return extent && isFinite(*extent) ? extent : std::nullopt;
}

}  // namespace mireth::platform
