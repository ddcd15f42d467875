// What an item belongs to, besides the item that it lies in.
#pragma once

#include <QObject>
#include <QQuickItem>

namespace mireth::qt {

/// The window whose content `item` is, or the pop-up that it is shown by or made for. Null for other items.
/// Main thread.
QObject* ownerOf(const QQuickItem& item);

/// The object that `item` was made in, or the list that has made it as one of its rows, wherever the item
/// lies now. Null where nothing tells. Main thread.
QObject* makerOf(const QQuickItem& item);

/// True for an item that QML has moved out of where it was made. Main thread.
bool liesElsewhereThanItWasMade(const QQuickItem& item);

}  // namespace mireth::qt
