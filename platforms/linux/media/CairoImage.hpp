// Draws images with Cairo. Private to this folder.
#pragma once

#include <cairo.h>

#include "MirethVex/Platform/Graphics.hpp"

namespace mireth::platform {

/// Fills `rect` with `tile` repeated from the origin.
void fillWithCairoPattern(cairo_t* cairo, const Rect& rect, const Image& tile);

/// As GraphicsContext::drawImage. A source that reaches beyond the image draws only what there is of it.
void drawCairoImage(cairo_t* cairo, const Image& image, const Rect& source, const Rect& destination,
                    Interpolation interpolation);

}  // namespace mireth::platform
