// The window's size, its screen's scale and its recognisers.
#include "MirethVex/Platform/Window.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Platform/TouchDelivery.hpp"

namespace mireth::platform {

Window::Window(Size size, double screenScale)
    : View(ViewClass::window()),
      screenScale_(std::isfinite(screenScale) && screenScale > 0 ? screenScale : 1.0),
      touchDelivery_(std::make_unique<TouchDelivery>(gestureRecognizers_)) {
    setFrame({0, 0, size.width, size.height});
}

Window::~Window() = default;

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
        recognizer->setState(GestureRecognizer::State::possible);
        gestureRecognizers_.push_back(recognizer);
        gestureRecognizersDidChange();
    }
}

void Window::removeGestureRecognizer(const std::shared_ptr<GestureRecognizer>& recognizer) {
    const auto found = std::ranges::find(gestureRecognizers_, recognizer);
    if (found == gestureRecognizers_.end()) {
        return;
    }
    // The argument may be the very element that is taken out.
    const std::shared_ptr<GestureRecognizer> removed = std::move(*found);
    gestureRecognizers_.erase(found);
    gestureRecognizersDidChange();
    touchDelivery_->recognizerWasRemoved(*removed);
}

void Window::sendEvent(const TouchEvent& event) {
    // Whoever is told may drop the window.
    const auto keepAlive = weak_from_this().lock();
    touchDelivery_->deliver(event);
}

}  // namespace mireth::platform
