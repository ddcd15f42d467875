// Pictures in tests: words for colours, pixels of images, layers drawn into an image.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "MirethVex/Platform/Layer.hpp"

namespace mireth::tests {

inline constexpr std::uint32_t black = 0xFF000000U;
inline constexpr std::uint32_t white = 0xFFFFFFFFU;
inline constexpr std::uint32_t red = 0xFFFF0000U;
inline constexpr std::uint32_t green = 0xFF00FF00U;
inline constexpr std::uint32_t blue = 0xFF0000FFU;

inline Color colorOf(std::uint32_t word) {
    const auto channel = [word](unsigned shift) { return ((word >> shift) & 0xFFU) / 255.0; };
    return {channel(16), channel(8), channel(0), channel(24)};
}

/// The pixel in column `x` and row `y` as "#aarrggbb"; "outside" beyond the image.
inline std::string pixel(const platform::Image& image, std::size_t x, std::size_t y) {
    if (x >= image.pixelWidth() || y >= image.pixelHeight()) {
        return "outside";
    }
    char text[16];
    std::snprintf(text, sizeof text, "#%08x", image.pixels()[y * image.pixelWidth() + x]);
    return text;
}

inline std::string text(std::uint32_t word) {
    char text[16];
    std::snprintf(text, sizeof text, "#%08x", word);
    return text;
}

/// One channel of a pixel: shift 24 alpha, 16 red, 8 green, 0 blue.
inline int channel(const platform::Image& image, std::size_t x, std::size_t y, unsigned shift) {
    return static_cast<int>((image.pixels()[y * image.pixelWidth() + x] >> shift) & 0xFFU);
}

/// An image of 2 x 2 blocks, each `side` pixels wide: red, green over blue, white.
inline platform::Image fourColors(std::size_t side = 1) {
    std::vector<std::uint32_t> pixels;
    for (std::size_t y = 0; y < 2 * side; ++y) {
        for (std::size_t x = 0; x < 2 * side; ++x) {
            const bool right = x >= side;
            pixels.push_back(y < side ? (right ? green : red) : (right ? white : blue));
        }
    }
    return {2 * side, 2 * side, std::move(pixels)};
}

/// A layer that fills `frame` with a colour.
inline std::shared_ptr<platform::Layer> makeBox(const Rect& frame, std::uint32_t color) {
    auto layer = std::make_shared<platform::Layer>();
    layer->setFrame(frame);
    layer->appearance.backgroundColor = colorOf(color);
    return layer;
}

}  // namespace mireth::tests
