// Which of a program's windows is the one that the user would call its main window.
#pragma once

#include <QWindow>

namespace mireth::qt {

/// Whether it can be one at all: it belongs to no other window and is neither a pop-up, a tool nor a splash
/// screen by its kind. What the desktop does not manage counts only when it fills its screen: else it is an
/// icon in the tray or the like. Main thread only.
bool isMainWindow(const QWindow& window);

/// Whether the user would rather call `window` the main window than `recorded`, both of them being there: a
/// dialog gives way to any other kind, and a window without a frame, which may be a splash, to one with a
/// frame that is no smaller.
bool givesWay(const QWindow& recorded, const QWindow& window);

/// The largest of those that are on the screen, dialogs last; null when there is none.
QWindow* largestMainWindow();

}  // namespace mireth::qt
