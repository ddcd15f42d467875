#include "platforms/qt/objects/ScreenKeyboard.hpp"

#include <QQuickItem>
#include <QQuickWindow>
#include <algorithm>

#include "platforms/qt/objects/ClassCatalog.hpp"
#include "platforms/qt/objects/HostedItems.hpp"

namespace mireth::qt {

namespace {

bool covers(const QQuickItem& item, const QPointF& place) {
    if (!item.isVisible()) {
        return false;
    }
    // Suggestions and keys held down stand beside the panel that they lie in.
    const auto children = item.childItems();
    return QRectF(0, 0, item.width(), item.height()).contains(item.mapFromScene(place)) ||
           std::ranges::any_of(children, [&](const QQuickItem* child) { return covers(*child, place); });
}

bool holdsKeyboardAt(const QQuickItem& item, const QPointF& place) {
    if (!item.isVisible()) {
        return false;
    }
    if (isKeyboard(*item.metaObject())) {
        return covers(item, place);
    }
    const auto children = item.childItems();
    return std::ranges::any_of(children,
                               [&](const QQuickItem* child) { return holdsKeyboardAt(*child, place); });
}

}  // namespace

bool isKeyboard(const QMetaObject& type) {
    for (const QMetaObject* candidate = &type; candidate != nullptr; candidate = candidate->superClass()) {
        const std::string name = className(*candidate);
        if (name == "InputPanel" || name.starts_with("QtVirtualKeyboard::")) {
            return true;
        }
    }
    return false;
}

bool isOnKeyboard(const QWindow& window, const QPointF& place) {
    if (isKeyboard(*window.metaObject())) {
        return true;
    }
    if (const auto* const items = qobject_cast<const QQuickWindow*>(&window)) {
        return holdsKeyboardAt(*items->contentItem(), place);
    }
    const auto hosted = itemsHostedIn(window);
    return std::ranges::any_of(hosted, [&](const HostedItems& items) {
        return holdsKeyboardAt(*items.window->contentItem(), place - items.place);
    });
}

}  // namespace mireth::qt
