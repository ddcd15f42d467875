// Whether two states of a layer tree look the same: what tells a tap that did something from a dead one.
#pragma once

#include <optional>

#include "MirethVex/Base/Color.hpp"
#include "MirethVex/Base/Geometry.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerSnapshot.hpp"

namespace mireth {

/// In points. Frames and bounds may differ by less than this; every other number is compared exactly.
inline constexpr double rectangleComparisonTolerance = 5.0;

/// Origin x and y, width and height each differ by less than the tolerance; a difference of exactly the
/// tolerance, or one that is not a number, is a change.
bool isApproximatelyEqual(const Rect& before, const Rect& after) noexcept;

/// The same red, green and blue. False when there is no other colour.
bool isEqualIgnoringAlpha(const Color& before, const std::optional<Color>& after) noexcept;

/// The comparisons of one layer, in the order in which they are made. Each stops at the first difference.
bool compareLayerCount(const LayerState& before, const LayerState& after) noexcept;
bool compareContent(const LayerState& before, const LayerState& after) noexcept;
bool compareAppearance(const LayerState& before, const LayerState& after) noexcept;
bool compareRenderingBehavior(const LayerState& before, const LayerState& after) noexcept;
bool compareGeometry(const LayerState& before, const LayerState& after) noexcept;
bool compareTransform(const LayerState& before, const LayerState& after) noexcept;

/// The layers and all their sublayers are the same; the first difference ends the comparison. Bitmaps are
/// not looked at. Any depth: no stack is needed.
bool isEqual(const LayerSnapshot& before, const LayerSnapshot& after) noexcept;

}  // namespace mireth
