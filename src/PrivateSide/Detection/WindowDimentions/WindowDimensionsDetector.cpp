#include "PrivateSide/Detection/WindowDimentions/WindowDimensionsDetector.hpp"

namespace mireth {

std::optional<WindowDimensionsDetails> WindowDimensionsDetector::detectWindowDimensionsChange(
    const platform::Image& image) {
    const Size points = image.size();
    const Size pixels{dimensionConverter_.convertToPixel(points.width),
                      dimensionConverter_.convertToPixel(points.height)};
    if (currentImageDimensions_ == pixels) {
        return std::nullopt;
    }
    currentImageDimensions_ = pixels;
    return WindowDimensionsDetails{pixels.width, pixels.height};
}

}  // namespace mireth
