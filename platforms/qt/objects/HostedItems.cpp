#include "platforms/qt/objects/HostedItems.hpp"

#include <QGuiApplication>
#include <QQuickRenderControl>

namespace mireth::qt {

std::vector<HostedItems> itemsHostedIn(const QWindow& window) {
    std::vector<HostedItems> hosted;
    const auto windows = QGuiApplication::allWindows();
    for (QWindow* const candidate : windows) {
        auto* const items = qobject_cast<QQuickWindow*>(candidate);
        // To ask the render control of another kind of window might run the app's code.
        if (items == nullptr || !items->inherits("QQuickWidgetOffscreenWindow")) {
            continue;
        }
        QPoint place;
        if (QQuickRenderControl::renderWindowFor(items, &place) == &window) {
            hosted.push_back({items, place});
        }
    }
    return hosted;
}

}  // namespace mireth::qt
