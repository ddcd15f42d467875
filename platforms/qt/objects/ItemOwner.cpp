#include "platforms/qt/objects/ItemOwner.hpp"

#include <QQuickWindow>
#include <algorithm>
#include <array>
#include <string_view>

#include "platforms/qt/objects/QtProperty.hpp"

namespace mireth::qt {

namespace {

/// A list tells its rows of itself by an object of one of these classes, which it leaves in each.
struct Attached {
    std::string_view name;
    const char* declaring;
};
constexpr std::array attachedByLists{Attached{"QQuickListViewAttached", "QQuickItemViewAttached"},
                                     Attached{"QQuickGridViewAttached", "QQuickItemViewAttached"},
                                     Attached{"QQuickTableViewAttached", "QQuickTableViewAttached"},
                                     Attached{"QQuickPathViewAttached", "QQuickPathViewAttached"}};

QObject* listOf(const QQuickItem& row) {
    for (const QObject* const child : row.children()) {
        const auto attached = std::ranges::find(
            attachedByLists, std::string_view(child->metaObject()->className()), &Attached::name);
        if (attached != attachedByLists.end()) {
            return qtProperty(*child, attached->declaring, "view").value<QQuickItem*>();
        }
    }
    return nullptr;
}

}  // namespace

QObject* ownerOf(const QQuickItem& item) {
    if (QQuickWindow* const window = item.window(); window != nullptr && window->contentItem() == &item) {
        return window;
    }
    // There is no other way from the item to its pop-up, which is no item.
    QObject* const parent = item.parent();
    return parent != nullptr && parent->inherits("QQuickPopup") ? parent : nullptr;
}

QObject* makerOf(const QQuickItem& item) {
    return item.parent() != nullptr ? item.parent() : listOf(item);
}

bool liesElsewhereThanItWasMade(const QQuickItem& item) {
    const QObject* const maker = makerOf(item);
    if (maker == nullptr || maker == item.parentItem() || maker == item.window()) {
        return false;
    }
    const auto* const makingItem = qobject_cast<const QQuickItem*>(maker);
    return makingItem == nullptr || !makingItem->isAncestorOf(&item);
}

}  // namespace mireth::qt
