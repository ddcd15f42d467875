#include "platforms/qt/mirror/ItemOwner.hpp"

#include <QQuickWindow>

namespace mireth::qt {

QObject* ownerOf(const QQuickItem& item) {
    if (QQuickWindow* const window = item.window(); window != nullptr && window->contentItem() == &item) {
        return window;
    }
    // There is no other way from the item to its pop-up, which is no item.
    QObject* const parent = item.parent();
    return parent != nullptr && parent->inherits("QQuickPopup") ? parent : nullptr;
}

}  // namespace mireth::qt
