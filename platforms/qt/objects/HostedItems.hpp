// The items that widgets of a window hold.
#pragma once

#include <QPoint>
#include <QQuickWindow>
#include <vector>

namespace mireth::qt {

struct HostedItems {
    /// Of the items; it is never shown itself.
    const QQuickWindow* window = nullptr;
    /// Of its upper left corner in the window that is shown.
    QPoint place;
};

/// Of each QQuickWidget in `window`. Main thread only.
std::vector<HostedItems> itemsHostedIn(const QWindow& window);

}  // namespace mireth::qt
