// Keeps what a view shows itself apart from what lies in it.
#pragma once

#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Platform/View.hpp"

namespace mireth::qt {

/// False when the view shows no more than its subviews do.
bool hasLook(const platform::View& view);

/// Moves what the view shows itself into a new subview, and gives that back. Subviews that are added later
/// lie above its border, are not cut to its corners, and with a z below 0 lie behind it.
platform::View& moveLookIntoSubview(platform::View& view, const Rect& place);

/// Takes what fills the view away from under its border, which is to show what lies behind the view.
void keepFillWithinBorder(platform::View& view);

}  // namespace mireth::qt
