// Draws what Image and BorderImage show, from the files their pictures come from.
#pragma once

#include <QQuickItem>
#include <optional>

#include "platforms/qt/pictures/ItemDrawing.hpp"

namespace mireth::qt {

/// Nothing for an item of another kind. A picture that is not in a file or a resource cannot be drawn, nor
/// one so large that to read it would hold the app up. Of an animation it is the first picture. Without an
/// area where the item has no picture or has not loaded it yet.
std::optional<ItemDrawing> imageDrawingOf(QQuickItem& item);

}  // namespace mireth::qt
