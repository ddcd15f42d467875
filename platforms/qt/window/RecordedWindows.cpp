#include "platforms/qt/window/RecordedWindows.hpp"

#include <QQuickRenderControl>
#include <QQuickWindow>

namespace mireth::qt {

namespace {

/// Items in a widget have a window of their own that is never shown.
QWindow& shownWindowOf(QWindow& window) {
    auto* const items = qobject_cast<QQuickWindow*>(&window);
    QWindow* const shown = items != nullptr ? QQuickRenderControl::renderWindowFor(items) : nullptr;
    return shown != nullptr ? *shown : window;
}

}  // namespace

std::shared_ptr<RecordedWindow> RecordedWindows::of(QWindow& window) {
    return find(LiveWindow(shownWindowOf(window)));
}

std::shared_ptr<RecordedWindow> RecordedWindows::of(QWidget& widget) {
    return find(LiveWindow(*widget.window()));
}

std::shared_ptr<RecordedWindow> RecordedWindows::find(const LiveWindow& live) {
    std::erase_if(known_, [](const auto& window) { return window.expired(); });
    for (const auto& window : known_) {
        if (auto recorded = window.lock(); recorded != nullptr && recorded->live() == live) {
            return recorded;
        }
    }
    auto recorded = std::make_shared<RecordedWindow>(live, environment_);
    known_.push_back(recorded);
    return recorded;
}

}  // namespace mireth::qt
