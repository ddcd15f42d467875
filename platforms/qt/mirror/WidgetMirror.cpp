#include "platforms/qt/mirror/WidgetMirror.hpp"

#include <QFrame>
#include <QGraphicsOpacityEffect>
#include <QGroupBox>
#include <QStatusBar>
#include <QToolBar>
#include <vector>

#include "MirethVex/Platform/TextViews.hpp"
#include "platforms/qt/mirror/MirroredViews.hpp"
#include "platforms/qt/mirror/StyledContents.hpp"
#include "platforms/qt/objects/LayerValues.hpp"
#include "platforms/qt/objects/MarkedOwners.hpp"
#include "platforms/qt/objects/MarkedWidgets.hpp"
#include "platforms/qt/objects/MarkingProperties.hpp"
#include "platforms/qt/objects/PassDepth.hpp"
#include "platforms/qt/pictures/PictureViews.hpp"
#include "platforms/qt/pictures/WidgetPictures.hpp"
#include "platforms/qt/screens/SeenScreens.hpp"
#include "platforms/qt/state/WindowState.hpp"

namespace mireth::qt {

using platform::Layer;
using platform::View;

namespace {

double opacityOf(const QWidget& widget) {
    const auto* const effect = qobject_cast<const QGraphicsOpacityEffect*>(widget.graphicsEffect());
    return effect != nullptr && effect->isEnabled() ? effect->opacity() : 1.0;
}

/// Back to front. A child that is a window of its own stands elsewhere.
std::vector<QWidget*> visibleChildren(const QWidget& widget) {
    std::vector<QWidget*> children;
    for (QObject* const object : widget.children()) {
        if (!object->isWidgetType()) {
            continue;
        }
        auto* const child = static_cast<QWidget*>(object);
        const bool isSeen = child->isVisible() && !child->size().isEmpty() && opacityOf(*child) > 0;
        if (!child->isWindow() && isSeen) {
            children.push_back(child);
        }
    }
    return children;
}

bool isLine(const QFrame& frame) {
    return frame.frameShape() == QFrame::HLine || frame.frameShape() == QFrame::VLine;
}

/// Whether the widget's own painting fills it with its style sheet's background.
bool drawsWhatASheetSays(const QWidget& widget) {
    return widget.testAttribute(Qt::WA_StyledBackground) ||
           qobject_cast<const QGroupBox*>(&widget) != nullptr ||
           qobject_cast<const QToolBar*>(&widget) != nullptr ||
           qobject_cast<const QStatusBar*>(&widget) != nullptr;
}

bool hasFrame(const QWidget& widget) {
    if (const auto* const box = qobject_cast<const QGroupBox*>(&widget)) {
        return !box->isFlat();
    }
    const auto* const frame = qobject_cast<const QFrame*>(&widget);
    return frame != nullptr && !isLine(*frame) && frame->frameShape() != QFrame::NoFrame &&
           frame->frameWidth() > 0;
}

/// A rule's colour is in the palette, too; its pictures and gradients may be anything.
bool hasColorOfASheet(const QWidget& widget) {
    return widget.testAttribute(Qt::WA_StyleSheet) && drawsWhatASheetSays(widget) &&
           widget.palette().brush(widget.backgroundRole()).style() == Qt::SolidPattern;
}

void addBackground(const QWidget& widget, Layer& layer) {
    const bool isFilled = widget.autoFillBackground() && !widget.testAttribute(Qt::WA_NoSystemBackground);
    if (isFilled || hasColorOfASheet(widget)) {
        layer.appearance.backgroundColor = colorOf(widget.palette().color(widget.backgroundRole()));
    }
}

void addFrame(const QWidget& widget, Layer& layer) {
    const auto edge = colorOf(widget.palette().color(QPalette::Mid));
    if (const auto* const frame = qobject_cast<const QFrame*>(&widget); frame != nullptr && isLine(*frame)) {
        layer.appearance.backgroundColor = edge;
    } else if (hasFrame(widget)) {
        layer.appearance.borderWidth = 1;
        layer.appearance.borderColor = edge;
    }
}

/// A picture of both would show what is marked: the widget is shown without what it paints itself.
bool hasNoPictureOfItsOwn(const QWidget& widget) {
    return !WidgetPictures::holdsItsChildrenApart(widget) && holdsMarked(widget);
}

bool showsSomething(Shown shown) {
    return shown == Shown::container || shown == Shown::styled;
}

/// A container, whatever it shows itself, or one picture together with what lies in it.
MirroredClass unmasked(MirroredClass mirrored, const QWidget& widget) {
    if (mirrored.shown != Shown::hosted) {
        const bool isWalked = WidgetPictures::holdsItsChildrenApart(widget) || holdsMarked(widget);
        mirrored.shown = isWalked ? Shown::container : Shown::image;
    }
    mirrored.emptyIsHarmless = true;
    return mirrored;
}

}  // namespace

std::shared_ptr<View> WidgetMirror::viewOf(QWidget& window) {
    auto view = copy(window);
    view->setFrame({0, 0, static_cast<double>(window.width()), static_cast<double>(window.height())});
    return view;
}

std::shared_ptr<View> WidgetMirror::copy(QWidget& widget) {
    screens_.look(widget);
    const auto children = visibleChildren(widget);
    const auto mirrored = classOf(widget, !children.empty());
    auto view = views_.make(mirrored);
    view->setFrame({static_cast<double>(widget.x()), static_cast<double>(widget.y()),
                    static_cast<double>(widget.width()), static_cast<double>(widget.height())});
    if (pictures_ == nullptr || mirrored.shown != Shown::image) {
        // A picture of the widget is as faint as the widget already.
        view->mutableLayer().appearance.opacity = opacityOf(widget);
    }
    if (pictures_ != nullptr && !(mirrored.shown == Shown::container && hasNoPictureOfItsOwn(widget))) {
        addPicture(widget, mirrored.shown, *view);
    } else {
        addOwnLook(widget, mirrored.shown, view->mutableLayer());
    }
    if (auto* const input = dynamic_cast<platform::TextInputView*>(view.get())) {
        input->isFirstResponder = widget.hasFocus();
    }
    state_.add(widget);
    if (mirrored.shown != Shown::container) {
        state_.addContentOf(widget);
    } else {
        ++depth_;
        for (QWidget* const child : children) {
            if (size_.takeOneMore()) {
                view->addSubview(copy(*child));
            }
        }
        --depth_;
    }
    return view;
}

MirroredClass WidgetMirror::classOf(const QWidget& widget, bool hasChildren) {
    MirroredClass mirrored = catalog_.ofWidget(widget);
    if (pictures_ != nullptr) {
        mirrored = unmasked(mirrored, widget);
    }
    const bool isUnknownLeaf =
        mirrored.shown == Shown::container && !hasChildren && !mirrored.emptyIsHarmless;
    // Else it is masked without that.
    const bool isWindowToBeSeen =
        widget.isWindow() && (pictures_ != nullptr || showsSomething(mirrored.shown));
    const bool isMarked = (pictures_ != nullptr ? showsMarked(widget) : isMarkedAsMasked(widget)) ||
                          (isWindowToBeSeen && belongsToMarked(widget));
    if (isUnknownLeaf || depth_ >= maximumPassDepth || isMarked) {
        mirrored.shown = Shown::label;
    }
    return mirrored;
}

void WidgetMirror::addPicture(QWidget& widget, Shown shown, View& view) {
    view.mutableLayer().appearance.masksToBounds = true;
    if (shown == Shown::container || shown == Shown::image) {
        pictures_->add(widget, view);
    } else {
        makePlainBlock(view.mutableLayer());
    }
}

void WidgetMirror::addOwnLook(const QWidget& widget, Shown shown, Layer& layer) {
    layer.appearance.masksToBounds = true;
    if (shown == Shown::container) {
        addBackground(widget, layer);
        addFrame(widget, layer);
    } else if (shown == Shown::styled) {
        layer.content.contents = contents_.of(widget);
        if (!layer.content.contents.hasBitmap()) {
            layer.appearance.backgroundColor = colorOf(widget.palette().color(QPalette::Mid));
        }
    }
}

}  // namespace mireth::qt
