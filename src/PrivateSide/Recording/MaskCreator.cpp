#include "PrivateSide/Recording/MaskCreator.hpp"

#include <utility>

#include "PrivateSide/Extensions/CALayerExtensions/MaskColors.hpp"
#include "PrivateSide/Recording/OptimizedImageRenderer.hpp"

namespace mireth {

using platform::GraphicsContext;
using platform::Image;

namespace {

constexpr double tilePoints = 12.0;

}  // namespace

MaskCreator::MaskCreator(std::shared_ptr<platform::Graphics> graphics, double screenScale)
    : tileSize_(tilePoints * screenScale),
      stripeColor_(imageMaskStripeColor),
      bgColor_(imageMaskBackgroundColor),
      linesWidth_(2.0),
      graphics_(std::move(graphics)) {}

Image MaskCreator::getMask(Rect rect) {
    const Image& tile = getTileImage();
    const Rect area{0, 0, rect.width, rect.height};
    OptimizedImageRenderer renderer(*graphics_, area.size());
    return renderer.image([&](GraphicsContext& context) {
        context.fillRectWithPattern(area, tile);
        // A line along the area inset by half the line's width: it ends where the area does.
        context.strokeInsideRoundedRect(area, {}, linesWidth_, stripeColor_);
    });
}

const Image& MaskCreator::getTileImage() {
    if (!tile_) {
        tile_ = createTile();
    }
    return *tile_;
}

Image MaskCreator::createTile() {
    const double side = tileSize_;
    OptimizedImageRenderer renderer(*graphics_, Size{side, side});
    return renderer.image([&](GraphicsContext& context) {
        context.fillRoundedRect({0, 0, side, side}, {}, bgColor_);
        context.strokeLine({0, side / 2}, {side / 2, 0}, linesWidth_, stripeColor_);
        context.strokeLine({0, side}, {side, 0}, linesWidth_, stripeColor_);
        context.strokeLine({side / 2, side}, {side, side / 2}, linesWidth_, stripeColor_);
    });
}

}  // namespace mireth
