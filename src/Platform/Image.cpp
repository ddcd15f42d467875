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
    const auto owner = std::make_shared<const std::vector<std::uint32_t>>(std::move(pixels));
    *this = sharing(width, height, std::shared_ptr<const std::uint32_t>(owner, owner->data()), scale);
}

Image Image::sharing(std::size_t width, std::size_t height, std::shared_ptr<const std::uint32_t> pixels,
                     double scale) {
    Image image;
    if (pixels != nullptr && pixelCount(width, height) > 0) {
        image.pixels_ = std::move(pixels);
        image.width_ = width;
        image.height_ = height;
        // A scale that makes no sense would turn up as an infinite size somewhere far away.
        image.scale_ = std::isfinite(scale) && scale > 0 ? scale : 1.0;
    }
    return image;
}

Image Image::filled(std::size_t width, std::size_t height, std::uint32_t pixel, double scale) {
    return {width, height, std::vector<std::uint32_t>(pixelCount(width, height), pixel), scale};
}

}  // namespace mireth::platform
