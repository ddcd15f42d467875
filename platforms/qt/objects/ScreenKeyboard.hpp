// Tells on-screen keyboards from the rest of an app: what is pressed on them is what the user types.
#pragma once

#include <QMetaObject>
#include <QPointF>
#include <QWindow>

namespace mireth::qt {

/// True for classes of windows and items that are the keyboard of the module QtQuick.VirtualKeyboard, or hold
/// one, and for what derives from them.
bool isKeyboard(const QMetaObject& type);

/// Whether there is a keyboard, or something that belongs to it, at a place of `window`.
bool isOnKeyboard(const QWindow& window, const QPointF& place);

}  // namespace mireth::qt
