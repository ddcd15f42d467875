// How a Rectangle looks: its colour or gradient, its border and its corners.
#pragma once

#include <QQuickItem>
#include <QRectF>

#include "MirethVex/Platform/Layer.hpp"

namespace mireth::qt {

/// `item` is a Rectangle; `layer` has its place already.
void addRectangleLook(const QQuickItem& item, platform::Layer& layer);

/// The part of the item that is filled: all of it, but for a rectangle with paddings.
QRectF filledPartOf(const QQuickItem& item);

}  // namespace mireth::qt
