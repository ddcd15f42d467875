// How the picture of an item is drawn from the item's properties.
#pragma once

#include <QPainter>
#include <QRectF>
#include <functional>

#include "platforms/qt/pictures/PictureValues.hpp"

namespace mireth::qt {

struct ItemDrawing {
    /// What the picture shows: as long as these stay the same, so does it.
    PictureValues values;
    /// What it covers, in the item's coordinates.
    QRectF area;
    /// Draws in the item's coordinates from `values` alone, while the item is there; false when that cannot
    /// be done.
    std::function<bool(QPainter&, const PictureValues&)> draw;
};

}  // namespace mireth::qt
