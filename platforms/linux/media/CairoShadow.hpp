// Soft shadows with Cairo. Private to this folder.
#pragma once

#include <cairo.h>

#include "MirethVex/Platform/Graphics.hpp"

namespace mireth::platform {

/// As GraphicsContext::drawShadow. What it costs grows with what the clip shows of it, not with its radius.
void drawCairoShadow(cairo_t* cairo, const Rect& rect, const CornerRadii& radii, const Color& color,
                     double radius);

}  // namespace mireth::platform
