#include "platforms/qt/objects/HostedItems.hpp"

#include <QQuickWidget>

namespace mireth::qt {

const QQuickWindow* itemsHostedBy(const QWidget& host) {
    const auto* const widget = qobject_cast<const QQuickWidget*>(&host);
    return widget != nullptr ? widget->quickWindow() : nullptr;
}

}  // namespace mireth::qt
