// Pictures by file name, and the sum of all pixels.
#include "phone/ImageStore.hpp"

#include <algorithm>
#include <cmath>

#include "phone/PngFile.hpp"
#include "phone/ScenarioError.hpp"

namespace mireth::phone {

namespace {

/// 256 MiB: some fifty full screens at three pixels per point.
constexpr std::size_t mostPixels = std::size_t{64} << 20U;

std::uint32_t toWord(const Color& color) {
    const auto channel = [](double value) { return static_cast<std::uint32_t>(std::lround(value * 255)); };
    return channel(color.alpha) << 24U | channel(color.red * color.alpha) << 16U |
           channel(color.green * color.alpha) << 8U | channel(color.blue * color.alpha);
}

}  // namespace

platform::Image ImageStore::load(const ImageSource& source) {
    if (const auto* color = std::get_if<Color>(&source)) {
        return platform::Image::filled(1, 1, toWord(*color), scale_);
    }
    const auto& file = std::get<std::filesystem::path>(source);
    const auto known = files_.find(file.string());
    if (known != files_.end()) {
        return known->second;
    }
    platform::Image image = readPng(file, scale_);
    reserve(image.pixelWidth() * image.pixelHeight());
    return files_.emplace(file.string(), std::move(image)).first->second;
}

void ImageStore::account(Size size, bool isMade) {
    const double sides = std::ceil(size.width * scale_) * std::ceil(size.height * scale_);
    const auto pixels = static_cast<std::size_t>(std::min(sides, 1e15));
    if (isMade) {
        reserve(pixels);
    } else {
        pixelsInUse_ -= std::min(pixels, pixelsInUse_);
    }
}

void ImageStore::reserve(std::size_t pixels) {
    if (pixels > mostPixels - pixelsInUse_) {
        throw ScenarioError("", "makes the scenario's texts and pictures too large, more than " +
                                    std::to_string(mostPixels >> 20U) + " million pixels together");
    }
    pixelsInUse_ += pixels;
}

}  // namespace mireth::phone
