#include "platforms/qt/pictures/WidgetPictures.hpp"

#include <QApplication>
#include <QEvent>
#include <QGraphicsEffect>
#include <QScopedValueRollback>
#include <utility>

#include "platforms/qt/objects/PassEntries.hpp"
#include "platforms/qt/pictures/PictureViews.hpp"

namespace mireth::qt {

using platform::View;

namespace {

bool hasEffect(const QWidget& widget) {
    return widget.graphicsEffect() != nullptr && widget.graphicsEffect()->isEnabled();
}

/// Without what is scrolled out of the window: of a long document only a page is worth a picture.
QRect seenPartOf(const QWidget& widget) {
    const QWidget* const window = widget.window();
    return widget.rect() & QRect(widget.mapFrom(window, QPoint(0, 0)), window->size());
}

QImage paintedPart(QWidget& widget, const QRect& part) {
    if (hasEffect(widget)) {
        // `render` leaves out what goes through an effect.
        return widget.grab(part).toImage().scaled(part.size()).convertToFormat(pictureFormat);
    }
    QImage picture = emptyPicture(part.size());
    widget.render(&picture, QPoint(0, 0), part,
                  widget.isWindow() ? QWidget::DrawWindowBackground : QWidget::RenderFlags());
    return picture;
}

platform::Image pictureOf(QWidget& widget, const QRect& part) {
    try {
        return smallestImageOf(paintedPart(widget, part));
    } catch (...) {
        return {};
    }
}

}  // namespace

WidgetPictures::WidgetPictures() {
    // All widgets at once: one for each would be run for all of its events, and outlive its picture.
    QCoreApplication::instance()->installEventFilter(this);
}

bool WidgetPictures::holdsItsChildrenApart(const QWidget& widget) {
    return !hasEffect(widget);
}

void WidgetPictures::add(QWidget& widget, View& view) {
    if (widget.testAttribute(Qt::WA_PaintOnScreen)) {
        makePlainBlock(view.mutableLayer());
        return;
    }
    const QRect part = seenPartOf(widget);
    if (part.isEmpty()) {
        return;
    }
    auto pictureView = addPictureView(view, part);
    const auto known = kept_.find(&widget);
    if (known != kept_.end() && known->second.widget == &widget && known->second.part == part) {
        known->second.wasSeen = true;
        pictureView->mutableLayer().content.contents = known->second.image;
    } else {
        wanted_.push_back({&widget, part, std::move(pictureView)});
    }
}

void WidgetPictures::endPass() {
    eraseUnseen(kept_);
    const auto wanted = std::exchange(wanted_, {});
    if (isPainting_) {
        return;
    }
    const QScopedValueRollback<bool> painting(isPainting_, true);
    for (const Wanted& next : wanted) {
        paint(next);
    }
}

void WidgetPictures::paint(const Wanted& wanted) {
    // Gone by what another one did while it was painted, or stuck in a painting of its own that has opened a
    // loop.
    if (wanted.widget == nullptr || wanted.widget->testAttribute(Qt::WA_WState_InPaintEvent)) {
        return;
    }
    const QWidget* const painted = wanted.widget;
    auto image = pictureOf(*wanted.widget, wanted.part);
    wanted.view->mutableLayer().content.contents = image;
    if (wanted.widget != nullptr) {
        kept_.insert_or_assign(painted, Kept{wanted.widget, wanted.part, std::move(image), false});
    }
}

bool WidgetPictures::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint && watched->isWidgetType()) {
        forget(*static_cast<const QWidget*>(watched));
    }
    return false;
}

void WidgetPictures::forget(const QWidget& repainted) {
    kept_.erase(&repainted);
    for (const QWidget* above = repainted.parentWidget(); above != nullptr; above = above->parentWidget()) {
        if (hasEffect(*above)) {
            kept_.erase(above);
        }
    }
}

}  // namespace mireth::qt
