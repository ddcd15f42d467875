// The items that a widget holds.
#pragma once

#include <QQuickWindow>
#include <QWidget>

namespace mireth::qt {

/// Those of a QQuickWidget, in a window that is never shown itself; null for any other widget. Main thread
/// only.
const QQuickWindow* itemsHostedBy(const QWidget& host);

}  // namespace mireth::qt
