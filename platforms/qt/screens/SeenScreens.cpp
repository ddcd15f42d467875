#include "platforms/qt/screens/SeenScreens.hpp"

#include <QQuickWindow>
#include <QStackedWidget>
#include <algorithm>

#include "platforms/qt/mirror/ClassCatalog.hpp"
#include "platforms/qt/mirror/LayerValues.hpp"
#include "platforms/qt/mirror/MarkingProperties.hpp"
#include "platforms/qt/mirror/QtProperty.hpp"

namespace mireth::qt {

namespace {

/// The name that the app gives, else that of the type or class.
std::string nameOf(const QObject& object) {
    const QString given = markedScreen(object);
    if (!given.isEmpty()) {
        return textOf(given);
    }
    const QMetaObject* type = object.metaObject();
    while (className(*type).empty() && type->superClass() != nullptr) {
        type = type->superClass();
    }
    // As elsewhere, without namespaces.
    const std::string name = className(*type);
    const auto lastScope = name.rfind("::");
    return lastScope == std::string::npos ? name : name.substr(lastScope + 2);
}

bool isScreen(Qt::WindowType type) {
    return type == Qt::Window || type == Qt::Dialog || type == Qt::Sheet || type == Qt::Widget;
}

/// A Loader is used for the smallest things; its item is a page when it takes up most of the window.
bool fillsTheWindow(const QQuickItem& loader) {
    const QQuickWindow* const window = loader.window();
    return window != nullptr &&
           loader.width() * loader.height() * 2 > static_cast<double>(window->width()) * window->height();
}

/// Stacks are used for parts of a window, too.
bool fillsTheWindow(const QWidget& stack) {
    const QWidget& window = *stack.window();
    return stack.width() * stack.height() * 2 > window.width() * window.height();
}

/// The pop-up that the item shows: there is no other public way to it than that it owns the item. Null for
/// any other item.
QObject* popupOf(const QQuickItem& item) {
    return item.inherits("QQuickPopupItem") ? item.parent() : nullptr;
}

bool isScreen(const QObject& popup) {
    return popup.inherits("QQuickDialog") || !markedScreen(popup).isEmpty();
}

bool isStack(const QQuickItem& item) {
    return item.inherits("QQuickStackView") || item.inherits("QQuickSwipeView");
}

}  // namespace

void SeenScreens::addWindow(QWidget& window) {
    if (isScreen(window.windowType())) {
        add(&window);
    }
}

void SeenScreens::addWindow(QWindow& window) {
    if (isScreen(window.type())) {
        add(&window);
    }
}

void SeenScreens::look(QWidget& widget) {
    if (auto* const stack = qobject_cast<QStackedWidget*>(&widget);
        stack != nullptr && fillsTheWindow(widget)) {
        holders_.push_back(stack);
        add(stack->currentWidget());
    }
    if (!markedScreen(widget).isEmpty()) {
        add(&widget);
    }
}

void SeenScreens::look(QQuickItem& item) {
    if (isStack(item)) {
        holders_.push_back(&item);
        const char* const stack = item.inherits("QQuickStackView") ? "QQuickStackView" : "QQuickContainer";
        add(qtProperty(item, stack, "currentItem").value<QQuickItem*>());
    } else if (item.inherits("QQuickLoader") && fillsTheWindow(item)) {
        holders_.push_back(&item);
        add(qtProperty(item, "QQuickLoader", "item").value<QObject*>());
    } else if (QObject* const popup = popupOf(item); popup != nullptr && isScreen(*popup)) {
        add(popup);
    }
    if (!markedScreen(item).isEmpty()) {
        add(&item);
    }
}

void SeenScreens::add(QObject* object) {
    const bool isKnown =
        std::ranges::any_of(screens_, [object](const SeenScreen& screen) { return screen.object == object; });
    if (object != nullptr && !isKnown) {
        screens_.push_back({object, nameOf(*object)});
    }
}

}  // namespace mireth::qt
