#include "platforms/qt/pictures/ItemPictures.hpp"

#include <QPainter>
#include <QQuickWindow>
#include <optional>

#include "platforms/qt/objects/PassEntries.hpp"
#include "platforms/qt/objects/QtProperty.hpp"
#include "platforms/qt/pictures/ImageDrawing.hpp"
#include "platforms/qt/pictures/PictureViews.hpp"
#include "platforms/qt/pictures/TextDrawing.hpp"

namespace mireth::qt {

namespace {

/// The source of an item with a layer is a sibling of that item's, and shows no more than the item does.
bool showsItsSibling(const QQuickItem& item) {
    const auto* const source =
        qtProperty(item, "QQuickShaderEffectSource", "sourceItem").value<QQuickItem*>();
    return source != nullptr && source->parentItem() == item.parentItem() && source->isVisible() &&
           source->position() == item.position() && source->size() == item.size();
}

std::optional<ItemDrawing> drawingOf(QQuickItem& item) {
    auto drawing = textDrawingOf(item);
    return drawing ? drawing : imageDrawingOf(item);
}

/// Without what is scrolled out of the window: of a long document only a page is worth a picture.
QRect seenPartOf(const QQuickItem& item, const QRectF& area) {
    const QRectF window(QPointF(0, 0), item.window() != nullptr ? item.window()->size() : QSize());
    return (area & item.mapRectFromScene(window)).toAlignedRect();
}

}  // namespace

void ItemPictures::add(QQuickItem& item, platform::View& view) {
    if (showsItsSibling(item)) {
        return;
    }
    const auto drawing = drawingOf(item);
    if (!drawing) {
        makePlainBlock(view.mutableLayer());
        return;
    }
    const QRect part = seenPartOf(item, drawing->area);
    if (part.isEmpty()) {
        return;
    }
    const Kept& kept = pictureOf(item, *drawing, part);
    if (kept.isBlock) {
        makePlainBlock(view.mutableLayer());
    } else {
        addPictureView(view, part)->mutableLayer().content.contents = kept.image;
    }
}

const ItemPictures::Kept& ItemPictures::pictureOf(QQuickItem& item, const ItemDrawing& drawing,
                                                  const QRect& part) {
    Kept& kept = kept_[&item];
    kept.wasSeen = true;
    if (kept.item == &item && kept.part == part && kept.values == drawing.values) {
        return kept;
    }
    QImage picture = emptyPicture(part.size());
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-part.topLeft());
    kept.isBlock = !drawing.draw(painter, drawing.values);
    painter.end();
    kept.image = smallestImageOf(picture);
    kept.item = &item;
    kept.values = drawing.values;
    kept.part = part;
    return kept;
}

void ItemPictures::endPass() {
    eraseUnseen(kept_);
}

}  // namespace mireth::qt
