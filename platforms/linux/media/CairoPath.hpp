// Rounded rectangles and colours in Cairo's terms. Private to this folder.
#pragma once

#include <cairo.h>

#include <optional>

#include "MirethVex/Platform/Graphics.hpp"

namespace mireth::platform {

/// The value within 0 to 1; 0 for one that is not a number.
double clampedToUnit(double value);

void setColor(cairo_t* cairo, const Color& color);

/// `rect` cut to the neighbourhood of the clip, so that its coordinates fit Cairo's. Nothing when it is
/// empty, not finite or out of sight.
std::optional<Rect> visiblePart(cairo_t* cairo, const Rect& rect);

/// The radius that a corner of `rect` has: none is larger than half a side.
double fittedRadius(double radius, const Rect& rect);

/// Adds the outline to the current path. Radii larger than half a side, or senseless, are corrected.
void addRoundedRect(cairo_t* cairo, const Rect& rect, const CornerRadii& radii);

/// Fills a border of `width` that lies inside `rect`, with the current source.
void fillRing(cairo_t* cairo, const Rect& rect, const CornerRadii& radii, double width);

/// The lengths in device pixels of a unit along the user's axes.
Size unitInPixels(cairo_t* cairo);

}  // namespace mireth::platform
