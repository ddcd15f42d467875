#include "platforms/qt/window/RecordedWindow.hpp"

#include "platforms/qt/window/WindowCapture.hpp"

namespace mireth::qt {

using platform::View;

RecordedWindow::RecordedWindow(const LiveWindow& live, const WindowEnvironment& environment)
    : Window(live.size(), live.scale()),
      live_(live),
      capture_(std::make_unique<WindowCapture>(*this, live, environment)) {}

RecordedWindow::~RecordedWindow() = default;

const std::vector<std::shared_ptr<View>>& RecordedWindow::subviews() const {
    return capture_->views();
}

const platform::Layer& RecordedWindow::layer() const {
    return capture_->layer();
}

void RecordedWindow::gestureRecognizersDidChange() {
    if (gestureRecognizers().empty()) {
        capture_->recordingEnded();
    }
}

std::shared_ptr<const View> RecordedWindow::unmasked() const {
    auto window = std::make_shared<View>(viewClass());
    window->mutableLayer() = layer();
    for (const auto& view : capture_->unmaskedViews()) {
        window->addSubview(view);
    }
    capture_->paintPictures();
    return window;
}

}  // namespace mireth::qt
