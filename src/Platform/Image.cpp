// Bitmaps shared by reference.
#include "MirethVex/Platform/Image.hpp"

#include <cmath>
#include <utility>

#include "MirethVex/Base/FatalError.hpp"

namespace mireth::platform {

namespace {

std::size_t pixelCount(std::size_t width, std::size_t height) {
    std::size_t count = 0;
    if (__builtin_mul_overflow(width, height, &count)) {
        fatalError("An image's width and height do not fit into memory");
    }
    return count;
}

}  // namespace

Image::Image(std::size_t width, std::size_t height, std::vector<std::uint32_t> pixels, double scale) {
    if (pixels.size() != pixelCount(width, height)) {
        fatalError("An image's pixels do not match its width and height");
    }
    if (pixels.empty()) {
        return;
    }
    pixels_ = std::make_shared<const std::vector<std::uint32_t>>(std::move(pixels));
    width_ = width;
    height_ = height;
    // A scale that makes no sense would turn up as an infinite size somewhere far away.
    scale_ = std::isfinite(scale) && scale > 0 ? scale : 1.0;
}

Image Image::filled(std::size_t width, std::size_t height, std::uint32_t pixel, double scale) {
    return {width, height, std::vector<std::uint32_t>(pixelCount(width, height), pixel), scale};
}

}  // namespace mireth::platform
