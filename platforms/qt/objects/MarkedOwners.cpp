#include "platforms/qt/objects/MarkedOwners.hpp"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QQuickItem>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

#include "platforms/qt/objects/ItemOwner.hpp"
#include "platforms/qt/objects/LiveWindow.hpp"
#include "platforms/qt/objects/MarkingProperties.hpp"
#include "platforms/qt/objects/QtProperty.hpp"

namespace mireth::qt {

namespace {

using Objects = std::vector<const QObject*>;

/// One tip serves many widgets in turn, and its parent is only the first of them; "What's this?" has no
/// parent. Whose they are their text may tell. Else it can be anyone's that is marked.
void addThoseHelped(const QWidget& help, Objects& owners) {
    const auto* const tip = qobject_cast<const QLabel*>(&help);
    const auto isItsTip = [tip](const QWidget* widget) {
        return tip != nullptr && widget->toolTip() == tip->text();
    };
    const auto widgets = QApplication::allWidgets();
    const bool isTold = std::ranges::any_of(widgets, isItsTip);
    std::ranges::copy_if(widgets, std::back_inserter(owners), [&](const QWidget* widget) {
        return isTold ? isItsTip(widget) : isMarkedAsMasked(*widget);
    });
}

void addOwners(const QWidget& widget, Objects& owners) {
    if (!widget.isWindow()) {
        return;
    }
    // QML's dialogs made of widgets belong to their windows by that alone.
    owners.push_back(widget.windowHandle());
    // A completer's list has no parent.
    owners.push_back(widget.focusProxy());
    if (const auto* const menu = qobject_cast<const QMenu*>(&widget)) {
        const auto openers = menu->menuAction()->associatedObjects();
        owners.insert(owners.end(), openers.begin(), openers.end());
    }
    if (widget.inherits("QTipLabel") || widget.inherits("QWhatsThat")) {
        addThoseHelped(widget, owners);
    }
}

void addOwners(const QWindow& window, Objects& owners) {
    if (QWindow* const below = window.transientParent()) {
        owners.push_back(below);
        owners.push_back(LiveWindow(*below).widget());
    }
}

Objects ownersOf(const QObject& object) {
    Objects owners{object.parent()};
    if (const auto* const widget = qobject_cast<const QWidget*>(&object)) {
        addOwners(*widget, owners);
    } else if (const auto* const window = qobject_cast<const QWindow*>(&object)) {
        addOwners(*window, owners);
    } else if (const auto* const item = qobject_cast<const QQuickItem*>(&object)) {
        owners.push_back(item->parentItem());
        owners.push_back(ownerOf(*item));
        owners.push_back(makerOf(*item));
    } else {
        owners.push_back(qtProperty(object, "QQuickPopup", "parent").value<QQuickItem*>());
    }
    return owners;
}

/// What is said of a QML window or pop-up is left on the item that shows it.
bool isMarked(const QObject& object) {
    const auto* const window = qobject_cast<const QQuickWindow*>(&object);
    return isMarkedAsMasked(object) || (window != nullptr && isMarkedAsMasked(*window->contentItem()));
}

}  // namespace

bool belongsToMarked(const QObject& object) {
    Objects found{&object};
    for (std::size_t next = 0; next < found.size(); ++next) {
        if (isMarked(*found[next])) {
            return true;
        }
        for (const QObject* const owner : ownersOf(*found[next])) {
            if (owner != nullptr && std::ranges::find(found, owner) == found.end()) {
                found.push_back(owner);
            }
        }
    }
    return false;
}

}  // namespace mireth::qt
