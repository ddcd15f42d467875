// Draws what Text, TextInput and TextEdit show, from their texts, fonts, colours and alignments.
#pragma once

#include <QQuickItem>
#include <optional>

#include "platforms/qt/pictures/ItemDrawing.hpp"

namespace mireth::qt {

/// Nothing for an item of another kind. Selections, line heights and the text cursor's own look are left out.
std::optional<ItemDrawing> textDrawingOf(QQuickItem& item);

}  // namespace mireth::qt
