#include "platforms/qt/state/WindowState.hpp"

#include <QGuiApplication>
#include <QQuickWindow>
#include <cstdint>

#include "MirethVex/Platform/TextViews.hpp"
#include "platforms/qt/objects/HostedItems.hpp"
#include "platforms/qt/objects/PassDepth.hpp"

namespace mireth::qt {

namespace {

/// A text cursor that blinks lies in it, and nothing that its text does not tell.
bool isTextEntry(Shown shown) {
    return shown == Shown::textField || shown == Shown::textView;
}

/// The app's windows, also those that do not belong to the recorded one: to open one is a reaction. A tool
/// tip comes by itself.
void addWindows(StateDigest& digest) {
    for (const QWindow* const window : QGuiApplication::topLevelWindows()) {
        if (window->isVisible() && window->type() != Qt::ToolTip) {
            digest.addNumber(static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(window)));
        }
    }
    // That of a dialog of the desktop's is not visible.
    digest.addNumber(QGuiApplication::modalWindow() != nullptr ? 1 : 0);
}

}  // namespace

void WindowState::startPass() {
    digest_ = {};
    hiddenSize_.startPass();
    addWindows(digest_);
}

void WindowState::add(const QWidget& widget) {
    widgets_.addTo(digest_, widget, catalog_.ofWidget(widget));
}

void WindowState::add(const QQuickItem& item) {
    items_.addTo(digest_, item, catalog_.ofItem(item));
}

void WindowState::addPicture(const platform::Image& picture) {
    for (const std::uint32_t pixel : picture.pixels()) {
        digest_.add(pixel);
    }
}

void WindowState::addContentOf(const QWidget& widget) {
    if (isTextEntry(catalog_.ofWidget(widget).shown) || depth_ >= maximumPassDepth) {
        return;
    }
    ++depth_;
    for (const QObject* const child : widget.children()) {
        if (child->isWidgetType()) {
            addHidden(*static_cast<const QWidget*>(child));
        }
    }
    if (const QQuickWindow* const items = itemsHostedBy(widget)) {
        addContentOf(*items->contentItem());
    }
    --depth_;
}

void WindowState::addContentOf(const QQuickItem& item) {
    if (isTextEntry(catalog_.ofItem(item).shown) || depth_ >= maximumPassDepth) {
        return;
    }
    ++depth_;
    for (const QQuickItem* const child : item.childItems()) {
        addHidden(*child);
    }
    --depth_;
}

void WindowState::addHidden(const QWidget& widget) {
    if (!widget.isVisible() || widget.isWindow() || !hiddenSize_.takeOneMore()) {
        return;
    }
    const QRect& place = widget.geometry();
    for (const int part : {place.x(), place.y(), place.width(), place.height()}) {
        digest_.addNumber(part);
    }
    add(widget);
    addContentOf(widget);
}

void WindowState::addHidden(const QQuickItem& item) {
    if (!item.isVisible() || item.opacity() <= 0 || !hiddenSize_.takeOneMore()) {
        return;
    }
    ItemState::addLook(digest_, item);
    add(item);
    addContentOf(item);
}

std::shared_ptr<platform::View> WindowState::view() {
    widgets_.endPass();
    items_.endPass();
    auto label = std::make_shared<platform::Label>();
    label->setFrame({});
    label->content.text = digest_.text();
    return label;
}

}  // namespace mireth::qt
