// How a Rectangle looks: its colour or gradient, its border and its corners.
#pragma once

#include <QQuickItem>

#include "MirethVex/Platform/View.hpp"

namespace mireth::qt {

/// `item` is a Rectangle; `view` has its place already, and no subviews.
void addRectangleLook(const QQuickItem& item, platform::View& view);

}  // namespace mireth::qt
