#include "platforms/qt/objects/ScreenKeyboard.hpp"

#include <QApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QWidget>
#include <algorithm>

#include "platforms/qt/objects/ClassCatalog.hpp"
#include "platforms/qt/objects/HostedItems.hpp"

namespace mireth::qt {

namespace {

/// The panel for handwriting fills the window, and lets presses through while it is disabled.
bool canBePressed(const QQuickItem& item) {
    return item.isVisible() && item.isEnabled();
}

bool covers(const QQuickItem& item, const QPointF& place) {
    if (!canBePressed(item)) {
        return false;
    }
    // Suggestions and keys held down stand beside the panel that they lie in.
    const auto children = item.childItems();
    return QRectF(0, 0, item.width(), item.height()).contains(item.mapFromScene(place)) ||
           std::ranges::any_of(children, [&](const QQuickItem* child) { return covers(*child, place); });
}

bool holdsKeyboardAt(const QQuickItem& item, const QPointF& place) {
    if (!canBePressed(item)) {
        return false;
    }
    if (isKeyboard(*item.metaObject())) {
        return covers(item, place);
    }
    const auto children = item.childItems();
    return std::ranges::any_of(children,
                               [&](const QQuickItem* child) { return holdsKeyboardAt(*child, place); });
}

/// The widget that fills `window`, which may be a native one within another; null for a window without
/// widgets.
const QWidget* widgetOf(const QWindow& window) {
    const auto widgets = QApplication::allWidgets();
    const auto found = std::ranges::find(widgets, &window, &QWidget::windowHandle);
    return found != widgets.end() ? *found : nullptr;
}

}  // namespace

bool isKeyboard(const QMetaObject& type) {
    for (const QMetaObject* candidate = &type; candidate != nullptr; candidate = candidate->superClass()) {
        const std::string name = className(*candidate);
        if (name == "InputPanel" || name == "HandwritingInputPanel" ||
            name.starts_with("QtVirtualKeyboard::")) {
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
    // Of all that lies there, hidden or not, one widget gets the press.
    const QWidget* const widget = widgetOf(window);
    const QWidget* const pressed = widget != nullptr ? widget->childAt(place.toPoint()) : nullptr;
    const QQuickWindow* const items = pressed != nullptr ? itemsHostedBy(*pressed) : nullptr;
    return items != nullptr && holdsKeyboardAt(*items->contentItem(), pressed->mapFrom(widget, place));
}

}  // namespace mireth::qt
