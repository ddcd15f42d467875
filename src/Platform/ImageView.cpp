// A view of one image, in its own colours or in a tint.
#include "MirethVex/Platform/ImageView.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace mireth::platform {

namespace {

double unit(double value) {
    return value >= 0 ? std::min(value, 1.0) : 0.0;
}

/// One channel of a premultiplied word.
std::uint32_t channel(double value, double alpha) {
    return static_cast<std::uint32_t>(std::lround(unit(value) * alpha * 255.0));
}

std::uint32_t premultiplied(const Color& color, double alpha) {
    return channel(1.0, alpha) << 24U | channel(color.red, alpha) << 16U | channel(color.green, alpha) << 8U |
           channel(color.blue, alpha);
}

Image inTint(const Image& image, const Color& tint) {
    // There are only 256 alphas, and far more pixels.
    std::array<std::uint32_t, 256> words{};
    for (std::size_t alpha = 0; alpha < words.size(); ++alpha) {
        words[alpha] = premultiplied(tint, unit(tint.alpha) * static_cast<double>(alpha) / 255.0);
    }
    std::vector<std::uint32_t> pixels(image.pixels().size());
    std::ranges::transform(image.pixels(), pixels.begin(),
                           [&words](std::uint32_t pixel) { return words[pixel >> 24U]; });
    return {image.pixelWidth(), image.pixelHeight(), std::move(pixels), image.scale()};
}

}  // namespace

void ImageView::setImage(Image image) {
    image_ = std::move(image);
    tinted_ = Image();
    mutableLayer().content.contents = image_;
    mutableLayer().geometry.contentsScale = image_.scale();
}

void ImageView::setTint(std::optional<Color> tint) {
    tint_ = tint;
    tinted_ = Image();
}

const Image& ImageView::tintedImage() const {
    if (!usesTintForImage()) {
        return image_;
    }
    if (!tinted_.hasBitmap()) {
        tinted_ = inTint(image_, *tint_);
    }
    return tinted_;
}

}  // namespace mireth::platform
