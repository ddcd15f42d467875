// The windows and pop-ups that are seen as items.
#pragma once

#include <QObject>
#include <QQuickItem>

namespace mireth::qt {

/// The window whose content `item` is, or the pop-up that it is shown by or made for. Null for other items.
/// Main thread.
QObject* ownerOf(const QQuickItem& item);

}  // namespace mireth::qt
