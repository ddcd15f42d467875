// The area that drawing a layer can touch.
#pragma once

#include <optional>

#include "MirethVex/Platform/Layer.hpp"

namespace mireth::platform {

/// A rectangle in the layer's coordinates that holds everything drawn for it and its sublayers. Nothing when
/// the tree is too large to be worth the walk or has no finite extent. It may be larger than what is visible.
std::optional<Rect> extentOf(const Layer& layer);

}  // namespace mireth::platform
