// The windows that a window of the app's belongs to.
#pragma once

#include <QWindow>
#include <vector>

namespace mireth::qt {

/// Of each the one that holds it, else the one that it is transient for, nearest first. Qt refuses no circle:
/// there it ends before the first that has come already. Main thread.
std::vector<QWindow*> windowsBelow(const QWindow& window);

}  // namespace mireth::qt
