// Places a layer's picture in its bounds.
#pragma once

#include "MirethVex/Platform/Layer.hpp"

namespace mireth::platform {

/// Where the gravity puts the picture, in the layer's coordinates; it may be larger than the bounds.
Rect contentsPlace(const Layer& layer);

/// Draws the picture of a layer that has one, with its gravity, its part, its stretching centre and its
/// filters. The context is in the layer's coordinates.
void drawContents(GraphicsContext& context, const Layer& layer);

}  // namespace mireth::platform
