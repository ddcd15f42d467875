// The geometry that drawing a layer needs: outlines, and the space its sublayers live in.
#pragma once

#include "MirethVex/Platform/Layer.hpp"

namespace mireth::platform {

double determinant(const AffineTransform& transform);
/// False for a transform that squeezes everything into a line or holds a value that is not finite.
bool isUsable(const AffineTransform& transform);
bool isFinite(const Rect& rect);

/// The radii of the bounds' corners; 0 where the layer's mask of corners leaves one square.
CornerRadii cornerRadiiOf(const Layer& layer);

/// What lies between a sublayer's place and the layer's own coordinates: the sublayer transform about the
/// anchor point, and the turning over of a flipped geometry.
AffineTransform sublayerSpaceOf(const Layer& layer);

}  // namespace mireth::platform
