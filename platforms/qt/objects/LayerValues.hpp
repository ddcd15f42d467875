// Qt's values in the terms of layers.
#pragma once

#include <QColor>
#include <QTransform>
#include <optional>
#include <string>

#include "MirethVex/Base/Color.hpp"
#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Platform/Layer.hpp"

class QImage;
class QString;

namespace mireth::qt {

/// Nothing for an invalid colour and for one that does not show.
std::optional<Color> colorOf(const QColor& color);

/// Places a layer of this size so that `toSuperlayer` maps its coordinates to its superlayer's. A transform
/// that has no place in a plane gives the smallest rectangle that holds it.
void place(platform::Layer& layer, Size size, const QTransform& toSuperlayer);

/// A copy of the pixels.
platform::Image imageOf(const QImage& image);

/// UTF-8.
std::string textOf(const QString& text);

}  // namespace mireth::qt
