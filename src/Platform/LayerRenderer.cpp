#include "Platform/LayerRenderer.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "Platform/LayerContents.hpp"
#include "Platform/LayerExtent.hpp"
#include "Platform/LayerShape.hpp"

namespace mireth::platform {

namespace {

/// Far deeper than any toolkit nests, and far from the end of the stack.
constexpr int maximumDepth = 512;
/// Each open group holds a picture of its own.
constexpr int maximumGroups = 32;

double depthOf(const std::shared_ptr<Layer>& layer) {
    const double depth = layer->geometry.zPosition;
    return std::isnan(depth) ? 0 : depth;
}

Color faded(Color color, double opacity) {
    color.alpha *= opacity;
    return color;
}

bool isVisible(const std::optional<Color>& color) {
    return color && color->alpha > 0;
}

bool hasBorder(const LayerAppearance& appearance) {
    return appearance.borderWidth > 0 && isVisible(appearance.borderColor);
}

bool castsShadow(const Layer& layer) {
    const auto& appearance = layer.appearance;
    if (appearance.masksToBounds || !(appearance.shadowOpacity > 0) || !isVisible(appearance.shadowColor)) {
        return false;
    }
    return appearance.shadowPath || isVisible(appearance.backgroundColor) ||
           layer.content.contents.hasBitmap();
}

/// How many pictures overlap when the layer is drawn; a single one can be faded without a group.
int countPieces(const Layer& layer) {
    return static_cast<int>(castsShadow(layer)) +
           static_cast<int>(isVisible(layer.appearance.backgroundColor)) +
           static_cast<int>(layer.content.contents.hasBitmap()) +
           static_cast<int>(hasBorder(layer.appearance)) +
           static_cast<int>(std::min<std::size_t>(layer.sublayers().size(), 2));
}

/// The sublayers' places in their list, back to front.
std::vector<std::size_t> drawingOrder(const std::vector<std::shared_ptr<Layer>>& sublayers) {
    std::vector<std::size_t> order(sublayers.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, {},
                      [&](std::size_t index) { return std::pair(depthOf(sublayers[index]), index); });
    return order;
}

bool showsBack(const AffineTransform& transform) {
    return determinant(transform) < 0;
}

}  // namespace

void LayerRenderer::drawRoot(const Layer& root) {
    const Rect& bounds = root.geometry.bounds;
    const auto toOrigin = AffineTransform::translation(-bounds.x, -bounds.y);
    if (!isUsable(toOrigin) || !isFinite(bounds)) {
        return;
    }
    context_.saveState();
    context_.concatenate(toOrigin);
    draw(root, Place{});
    context_.restoreState();
}

void LayerRenderer::draw(const Layer& layer, const Place& place) {
    const auto& appearance = layer.appearance;
    const bool turnedAway = place.backFacing && !appearance.isDoubleSided;
    if (appearance.hidden || turnedAway || !(appearance.opacity > 0) || place.depth > maximumDepth ||
        layersLeft_ == 0) {
        return;
    }
    --layersLeft_;
    Place own = place;
    own.opacity *= std::min(appearance.opacity, 1.0);
    if (appearance.mask != nullptr) {
        drawMasked(layer, own);
    } else if (own.opacity < 1 && appearance.allowsGroupOpacity && own.groups < maximumGroups &&
               countPieces(layer) > 1) {
        drawFaded(layer, own);
    } else {
        drawPieces(layer, own);
    }
}

void LayerRenderer::drawMasked(const Layer& layer, const Place& place) {
    const Layer& mask = *layer.appearance.mask;
    const AffineTransform toLayer = mask.transformToSuperlayer();
    if (place.groups >= maximumGroups || !isUsable(toLayer)) {
        return;
    }
    Place inside = place;
    inside.opacity = 1;
    ++inside.groups;
    context_.saveState();
    clipTo(mask, toLayer, place);
    context_.beginGroup();
    drawPieces(layer, inside);
    context_.endGroupMasked(place.opacity, [&](GraphicsContext& context) {
        context.saveState();
        context.concatenate(toLayer);
        Place maskPlace = inside;
        maskPlace.toRoot = toLayer.concatenating(place.toRoot);
        ++maskPlace.depth;
        draw(mask, maskPlace);
        context.restoreState();
    });
    context_.restoreState();
}

void LayerRenderer::drawFaded(const Layer& layer, const Place& place) {
    Place inside = place;
    inside.opacity = 1;
    ++inside.groups;
    context_.saveState();
    clipTo(layer, AffineTransform{}, place);
    context_.beginGroup();
    drawPieces(layer, inside);
    context_.endGroup(place.opacity);
    context_.restoreState();
}

void LayerRenderer::clipTo(const Layer& content, const AffineTransform& toLayer, const Place& place) {
    const auto extent = extentOf(content);
    if (!extent) {
        return;
    }
    Rect area = toLayer.boundingBox(*extent);
    // Room for soft edges, also when the layer is shown very small.
    const double margin = 2.0 / std::sqrt(std::abs(determinant(place.toRoot)));
    area = {area.x - margin, area.y - margin, area.width + 2 * margin, area.height + 2 * margin};
    if (isFinite(area)) {
        context_.clipToRoundedRect(area, {});
    }
}

void LayerRenderer::drawPieces(const Layer& layer, const Place& place) {
    const auto& appearance = layer.appearance;
    const Rect& bounds = layer.geometry.bounds;
    const CornerRadii radii = cornerRadiiOf(layer);
    if (castsShadow(layer)) {
        drawShadow(layer, place.opacity);
    }
    if (isVisible(appearance.backgroundColor)) {
        context_.fillRoundedRect(bounds, radii, faded(*appearance.backgroundColor, place.opacity));
    }
    const bool hasContents = layer.content.contents.hasBitmap();
    const bool clips = appearance.masksToBounds && (hasContents || !layer.sublayers().empty());
    if (clips) {
        context_.saveState();
        context_.clipToRoundedRect(bounds, radii);
    }
    if (hasContents) {
        drawImage(layer, place);
    }
    drawSublayers(layer, place);
    if (clips) {
        context_.restoreState();
    }
    if (hasBorder(appearance)) {
        context_.strokeInsideRoundedRect(bounds, radii, appearance.borderWidth,
                                         faded(*appearance.borderColor, place.opacity));
    }
}

void LayerRenderer::drawShadow(const Layer& layer, double opacity) {
    const auto& appearance = layer.appearance;
    Rect rect = layer.geometry.bounds;
    CornerRadii radii = cornerRadiiOf(layer);
    if (appearance.shadowPath) {
        rect = appearance.shadowPath->rect;
        radii.fill(appearance.shadowPath->cornerRadius);
    }
    rect.x += appearance.shadowOffset.width;
    rect.y += appearance.shadowOffset.height;
    const Color color = faded(*appearance.shadowColor, std::min(appearance.shadowOpacity, 1.0) * opacity);
    context_.drawShadow(rect, radii, color, appearance.shadowRadius);
}

void LayerRenderer::drawImage(const Layer& layer, const Place& place) {
    const Rect& bounds = layer.geometry.bounds;
    context_.saveState();
    if (place.upsideDown) {
        // Only positions are turned over; pictures stay upright.
        context_.concatenate({1, 0, 0, -1, 0, 2 * bounds.y + bounds.height});
    }
    if (place.opacity < 1) {
        context_.beginGroup();
        drawContents(context_, layer);
        context_.endGroup(place.opacity);
    } else {
        drawContents(context_, layer);
    }
    context_.restoreState();
}

void LayerRenderer::drawSublayers(const Layer& layer, const Place& place) {
    if (layer.sublayers().empty()) {
        return;
    }
    Place inside = place;
    ++inside.depth;
    const AffineTransform sublayerSpace = sublayerSpaceOf(layer);
    inside.backFacing ^= showsBack(layer.transform.sublayerTransform.affine());
    inside.upsideDown ^= layer.rendering.isGeometryFlipped;
    if (std::ranges::is_sorted(layer.sublayers(), {}, depthOf)) {
        for (const auto& sublayer : layer.sublayers()) {
            drawSublayer(*sublayer, sublayerSpace, inside);
        }
        return;
    }
    for (const std::size_t index : drawingOrder(layer.sublayers())) {
        drawSublayer(*layer.sublayers()[index], sublayerSpace, inside);
    }
}

void LayerRenderer::drawSublayer(const Layer& sublayer, const AffineTransform& sublayerSpace, Place place) {
    const AffineTransform toSuperlayer = sublayer.transformToSuperlayer().concatenating(sublayerSpace);
    place.toRoot = toSuperlayer.concatenating(place.toRoot);
    if (sublayer.appearance.hidden || !isUsable(toSuperlayer) || !isUsable(place.toRoot)) {
        return;
    }
    place.backFacing ^= showsBack(sublayer.transform.transform.affine());
    context_.saveState();
    context_.concatenate(toSuperlayer);
    draw(sublayer, place);
    context_.restoreState();
}

}  // namespace mireth::platform
