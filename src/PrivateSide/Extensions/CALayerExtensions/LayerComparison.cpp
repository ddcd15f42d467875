#include "PrivateSide/Extensions/CALayerExtensions/LayerComparison.hpp"

#include <algorithm>
#include <cmath>

namespace mireth {

namespace {

bool isWithinTolerance(double before, double after) noexcept {
    return std::abs(before - after) < rectangleComparisonTolerance;
}

bool compareColor(const std::optional<Color>& before, const std::optional<Color>& after) noexcept {
    return before ? isEqualIgnoringAlpha(*before, after) : !after;
}

bool compareLayer(const LayerState& before, const LayerState& after) noexcept {
    return compareLayerCount(before, after) && compareContent(before, after) &&
           compareAppearance(before, after) && compareRenderingBehavior(before, after) &&
           compareGeometry(before, after) && compareTransform(before, after);
}

}  // namespace

bool isApproximatelyEqual(const Rect& before, const Rect& after) noexcept {
    return isWithinTolerance(before.x, after.x) && isWithinTolerance(before.y, after.y) &&
           isWithinTolerance(before.width, after.width) && isWithinTolerance(before.height, after.height);
}

bool isEqualIgnoringAlpha(const Color& before, const std::optional<Color>& after) noexcept {
    return after && before.red == after->red && before.green == after->green && before.blue == after->blue;
}

bool compareLayerCount(const LayerState& before, const LayerState& after) noexcept {
    return before.sublayerCount == after.sublayerCount;
}

bool compareContent(const LayerState& before, const LayerState& after) noexcept {
    return before.contentsRect == after.contentsRect && before.contentsCenter == after.contentsCenter;
}

bool compareAppearance(const LayerState& before, const LayerState& after) noexcept {
    return compareColor(before.borderColor, after.borderColor) &&
           compareColor(before.backgroundColor, after.backgroundColor) &&
           before.contentsGravity == after.contentsGravity && before.isHidden == after.isHidden &&
           before.masksToBounds == after.masksToBounds && before.mask == after.mask &&
           before.isDoubleSided == after.isDoubleSided && before.cornerRadius == after.cornerRadius &&
           before.maskedCorners == after.maskedCorners && before.borderWidth == after.borderWidth;
}

bool compareRenderingBehavior(const LayerState& before, const LayerState& after) noexcept {
    const auto& was = before.rendering;
    const auto& is = after.rendering;
    return was.opaque == is.opaque && was.edgeAntialiasingMask == is.edgeAntialiasingMask &&
           was.isGeometryFlipped == is.isGeometryFlipped &&
           was.drawsAsynchronously == is.drawsAsynchronously && was.shouldRasterize == is.shouldRasterize &&
           was.rasterizationScale == is.rasterizationScale;
}

bool compareGeometry(const LayerState& before, const LayerState& after) noexcept {
    return isApproximatelyEqual(before.frame, after.frame) &&
           isApproximatelyEqual(before.bounds, after.bounds) && before.position == after.position &&
           before.zPosition == after.zPosition;
}

bool compareTransform(const LayerState& before, const LayerState& after) noexcept {
    if (before.transform == nullptr || after.transform == nullptr) {
        return before.transform == after.transform && before.zPosition == after.zPosition;
    }
    return *before.transform == *after.transform && before.zPosition == after.zPosition;
}

bool isEqual(const LayerSnapshot& before, const LayerSnapshot& after) noexcept {
    // Layer by layer through the lists is depth first through the trees: as long as every layer so far had as
    // many sublayers as its counterpart, the lists go through the same places of both trees.
    return std::ranges::equal(before.layers(), after.layers(), compareLayer);
}

}  // namespace mireth
