// Which widgets are marked, or show what is marked in a picture of their own.
#pragma once

#include <QWidget>

namespace mireth::qt {

/// Marked itself, or the part of a QGraphicsView that shows a marked widget in its scene. Main thread.
bool showsMarked(const QWidget& widget);

/// True when such a widget lies in `widget`, however deep.
bool holdsMarked(const QWidget& widget);

}  // namespace mireth::qt
