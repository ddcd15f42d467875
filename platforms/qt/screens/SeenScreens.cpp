#include "platforms/qt/screens/SeenScreens.hpp"

#include <QQuickWindow>
#include <QStackedWidget>
#include <algorithm>

#include "platforms/qt/objects/ClassCatalog.hpp"
#include "platforms/qt/objects/LayerValues.hpp"
#include "platforms/qt/objects/MarkingProperties.hpp"
#include "platforms/qt/objects/QtProperty.hpp"
#include "platforms/qt/objects/WindowKinds.hpp"

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

QQuickItem* currentPageOf(const QQuickItem& stack) {
    const char* const type = stack.inherits("QQuickStackView") ? "QQuickStackView" : "QQuickContainer";
    return qtProperty(stack, type, "currentItem").value<QQuickItem*>();
}

/// All pages of a SwipeView are visible items, side by side; the user is on one of them.
bool isOnAnotherPage(const QQuickItem& item) {
    for (const QQuickItem* holder = item.parentItem(); holder != nullptr; holder = holder->parentItem()) {
        if (holder->inherits("QQuickSwipeView")) {
            const QQuickItem* const page = currentPageOf(*holder);
            if (page == nullptr || (page != &item && !page->isAncestorOf(&item))) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

void SeenScreens::addWindow(QWidget& window) {
    if (canBeMain(window.windowType())) {
        add(&window);
    }
}

void SeenScreens::addWindow(QWindow& window) {
    if (canBeMain(window.type())) {
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
    QObject* page = nullptr;
    if (isStack(item)) {
        holders_.push_back(&item);
        page = currentPageOf(item);
    } else if (item.inherits("QQuickLoader") && fillsTheWindow(item)) {
        holders_.push_back(&item);
        page = qtProperty(item, "QQuickLoader", "item").value<QObject*>();
    } else if (QObject* const popup = popupOf(item); popup != nullptr && isScreen(*popup)) {
        page = popup;
    }
    const bool isNamed = !markedScreen(item).isEmpty();
    if ((page != nullptr || isNamed) && !isOnAnotherPage(item)) {
        add(page);
        add(isNamed ? &item : nullptr);
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
