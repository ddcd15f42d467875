// The window's size and its screen's scale.
#include "MirethVex/Platform/Window.hpp"

#include <cmath>

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

}  // namespace mireth::platform
