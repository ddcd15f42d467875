// What is done to the layers of a detached copy: masking them, and letting go of what they hold.
#pragma once

#include <memory>

#include "MirethVex/Platform/Layer.hpp"

namespace mireth {

/// Makes `layer` a mask block: filled with the stripe colour, with corners of radius 4.
void applyMask(platform::Layer& layer);
/// A new layer with the place and shape of `source`, showing nothing but a mask.
std::shared_ptr<platform::Layer> makeMaskBlock(const platform::Layer& source);

/// Lets go of the pictures that the layer shows.
void flushContent(platform::Layer& layer) noexcept;
/// Lets go of everything that decides how the layer looks, its mask included.
void flushAppearance(platform::Layer& layer) noexcept;
/// Both, for the layer and all layers below it. For copies only, never for live layers.
void flushLayerTree(platform::Layer& layer) noexcept;

}  // namespace mireth
