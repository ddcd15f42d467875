// The window's size, its screen's scale, and the way of a touch.
#include "MirethVex/Platform/Window.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace mireth::platform {

Window::Window(Size size, double screenScale)
    : View(ViewClass::window()),
      screenScale_(std::isfinite(screenScale) && screenScale > 0 ? screenScale : 1.0) {
    setFrame({0, 0, size.width, size.height});
}

void Window::resize(Size size) {
    // Not the frame's origin: the frame is larger than the window while a transform turns it.
    const LayerGeometry& geometry = layer().geometry;
    setFrame({geometry.position.x - geometry.anchorPoint.x * geometry.bounds.width,
              geometry.position.y - geometry.anchorPoint.y * geometry.bounds.height, size.width,
              size.height});
}

void Window::addGestureRecognizer(const std::shared_ptr<GestureRecognizer>& recognizer) {
    if (recognizer != nullptr &&
        std::ranges::find(gestureRecognizers_, recognizer) == gestureRecognizers_.end()) {
        gestureRecognizers_.push_back(recognizer);
    }
}

void Window::removeGestureRecognizer(const std::shared_ptr<GestureRecognizer>& recognizer) {
    // The argument may be an element of the list.
    const auto removed = recognizer;
    std::erase(gestureRecognizers_, removed);
}

void Window::sendEvent(const TouchEvent& event) {
    const auto inPhase = [&event](TouchPhase phase) {
        std::vector<Touch> touches;
        std::ranges::copy_if(event.touches, std::back_inserter(touches),
                             [phase](const Touch& touch) { return touch.phase == phase; });
        return touches;
    };
    const auto recognizers = gestureRecognizers_;
    for (const auto& [phase, call] :
         {std::pair{TouchPhase::began, &GestureRecognizer::touchesBegan},
          std::pair{TouchPhase::moved, &GestureRecognizer::touchesMoved},
          std::pair{TouchPhase::ended, &GestureRecognizer::touchesEnded},
          std::pair{TouchPhase::cancelled, &GestureRecognizer::touchesCancelled}}) {
        const auto touches = inPhase(phase);
        if (touches.empty()) {
            continue;
        }
        for (const auto& recognizer : recognizers) {
            if (recognizer->isEnabled()) {
                (recognizer.get()->*call)(touches, event);
            }
        }
    }
}

}  // namespace mireth::platform
