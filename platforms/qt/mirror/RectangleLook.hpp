// How a Rectangle looks: its colour or gradient, its border and its corners.
#pragma once

#include <QQuickItem>

#include "MirethVex/Platform/Layer.hpp"

namespace mireth::qt {

/// `item` is a Rectangle; `layer` has its place already.
void addRectangleLook(const QQuickItem& item, platform::Layer& layer);

}  // namespace mireth::qt
