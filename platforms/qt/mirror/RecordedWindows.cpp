#include "platforms/qt/mirror/RecordedWindows.hpp"

namespace mireth::qt {

std::shared_ptr<RecordedWindow> RecordedWindows::of(QWindow& window) {
    return find(LiveWindow(window));
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
