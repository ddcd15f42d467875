#include "platforms/qt/mirror/ItemMirror.hpp"

#include <QTransform>
#include <algorithm>

#include "MirethVex/Platform/TextViews.hpp"
#include "platforms/qt/mirror/LookView.hpp"
#include "platforms/qt/mirror/MirroredViews.hpp"
#include "platforms/qt/mirror/RectangleLook.hpp"
#include "platforms/qt/objects/ItemOwner.hpp"
#include "platforms/qt/objects/LayerValues.hpp"
#include "platforms/qt/objects/MarkedOwners.hpp"
#include "platforms/qt/objects/MarkingProperties.hpp"
#include "platforms/qt/objects/PassDepth.hpp"
#include "platforms/qt/objects/ScreenKeyboard.hpp"
#include "platforms/qt/pictures/ItemPictures.hpp"
#include "platforms/qt/pictures/PictureViews.hpp"
#include "platforms/qt/screens/SeenScreens.hpp"
#include "platforms/qt/state/WindowState.hpp"

namespace mireth::qt {

using platform::Layer;
using platform::View;

namespace {

bool isSeen(const QQuickItem& item) {
    return item.isVisible() && item.opacity() > 0;
}

/// To the window for the item that holds all others.
QTransform transformToParent(const QQuickItem& item) {
    bool isKnown = false;
    const QTransform transform = item.itemTransform(item.parentItem(), &isKnown);
    return isKnown ? transform : QTransform::fromTranslate(item.x(), item.y());
}

const View* firstIn(const View& view) {
    return view.subviews().empty() ? nullptr : view.subviews().front().get();
}

bool liesBehindItsParent(const QQuickItem* item) {
    return item->z() < 0 && isSeen(*item);
}

}  // namespace

std::shared_ptr<View> ItemMirror::viewOf(QQuickItem& item) {
    screens_.look(item);
    const QTransform toParent = transformToParent(item);
    const auto mirrored = classOf(item, toParent.isAffine());
    auto view = views_.make(mirrored);
    Layer& layer = view->mutableLayer();
    place(layer, {item.width(), item.height()}, toParent);
    layer.geometry.zPosition = item.z();
    layer.appearance.opacity = item.opacity();
    layer.appearance.allowsGroupOpacity = false;
    layer.appearance.masksToBounds = item.clip();
    if (auto* const input = dynamic_cast<platform::TextInputView*>(view.get())) {
        input->isFirstResponder = item.hasActiveFocus();
    }
    state_.add(item);
    addLook(item, mirrored.shown, *view);
    const bool isOpen = mirrored.shown == Shown::container || mirrored.shown == Shown::rectangle;
    if (isOpen || (pictures_ != nullptr && mirrored.shown != Shown::hosted)) {
        addChildren(item, *view);
    } else {
        state_.addContentOf(item);
    }
    return view;
}

void ItemMirror::addLook(QQuickItem& item, Shown shown, View& view) {
    if (shown == Shown::rectangle) {
        addRectangleLook(item, view);
        // Nowhere else is what an item is filled with compared, when that is no colour.
        for (const View* look = &view; look != nullptr; look = firstIn(*look)) {
            state_.addPicture(look->layer().content.contents);
        }
    } else if (pictures_ == nullptr || shown == Shown::container) {
        return;
    } else if (shown == Shown::hosted) {
        makePlainBlock(view.mutableLayer());
    } else {
        pictures_->add(item, view);
    }
}

MirroredClass ItemMirror::classOf(const QQuickItem& item, bool isInThePlane) {
    MirroredClass mirrored = catalog_.ofItem(item);
    const QObject* const owner = ownerOf(item);
    if (owner != nullptr) {
        mirrored.viewClass = &withNamesOf(*owner, *mirrored.viewClass);
    }
    if (mirrored.shown == Shown::label && !item.flags().testFlag(QQuickItem::ItemHasContents)) {
        // It draws nothing itself.
        mirrored.shown = Shown::container;
    }
    if (owner != nullptr && isKeyboard(*owner->metaObject())) {
        mirrored.shown = Shown::hosted;
    }
    // What it lies in is not marked, or nobody would look at it.
    const bool isMarked = isMarkedAsMasked(item) || (owner != nullptr && belongsToMarked(*owner)) ||
                          (liesElsewhereThanItWasMade(item) && belongsToMarked(item));
    // Turned out of the plane, its place is known, but not how it looks.
    if (depth_ >= maximumPassDepth || !isInThePlane || isMarked) {
        mirrored.shown = pictures_ != nullptr ? Shown::hosted : Shown::label;
    }
    return mirrored;
}

void ItemMirror::addChildren(const QQuickItem& item, View& view) {
    const auto children = item.childItems();
    if (hasLook(view) && std::ranges::any_of(children, liesBehindItsParent)) {
        moveLookIntoSubview(view, view.bounds());
    }
    ++depth_;
    for (QQuickItem* const child : children) {
        if (isSeen(*child) && size_.takeOneMore()) {
            view.addSubview(viewOf(*child));
        }
    }
    --depth_;
}

}  // namespace mireth::qt
