#include "platforms/linux/media/PlanarConverter.hpp"

#include <algorithm>

namespace mireth::platform {

namespace {

/// Rows begin where vector instructions like to read.
constexpr int rowAlignment = 32;

int aligned(int length) {
    return (length + rowAlignment - 1) / rowAlignment * rowAlignment;
}

/// The channels of a pixel, or their sums over several. Premultiplied, they are the colours on black already.
struct Channels {
    std::int32_t red;
    std::int32_t green;
    std::int32_t blue;

    Channels operator+(const Channels& other) const {
        return {red + other.red, green + other.green, blue + other.blue};
    }
};

Channels channelsOf(std::uint32_t word) {
    return {static_cast<std::int32_t>(word >> 16U & 0xFFU), static_cast<std::int32_t>(word >> 8U & 0xFFU),
            static_cast<std::int32_t>(word & 0xFFU)};
}

/// ITU-R BT.601-7, 2.5, from full to limited range, times 2^16. Those of a chroma add up to nothing, so that
/// grey stays grey.
constexpr Channels lumaWeights{16829, 33039, 6416};
constexpr Channels blueWeights{-9714, -19070, 28784};
constexpr Channels redWeights{28784, -24103, -4681};
constexpr int weightBits = 16;

/// The weighted sum of 2^`countBits` pixels, as the mean of them, to the nearest.
template <int countBits>
std::uint8_t weighted(const Channels& sum, const Channels& weights, std::int32_t offset) {
    constexpr int bits = weightBits + countBits;
    constexpr std::int32_t half = 1 << (bits - 1);
    const std::int32_t value =
        sum.red * weights.red + sum.green * weights.green + sum.blue * weights.blue + (offset << bits) + half;
    return static_cast<std::uint8_t>(value >> bits);
}

std::uint8_t lumaOf(std::uint32_t word) {
    constexpr std::int32_t black = 16;
    return weighted<0>(channelsOf(word), lumaWeights, black);
}

const std::uint32_t* rowAt(const std::byte* pixels, std::size_t bytesPerRow, int row) {
    return reinterpret_cast<const std::uint32_t*>(pixels + bytesPerRow * static_cast<std::size_t>(row));
}

void fillLuma(const std::uint32_t* row, int width, std::uint8_t* luma) {
    for (int x = 0; x < width; ++x) {
        luma[x] = lumaOf(row[x]);
    }
}

/// The pixel in the column and its two neighbours, in two rows, as eight pixels. Where H.264 is not told
/// otherwise a chroma lies on the left of its two columns, so the pixel there counts twice.
Channels around(const std::uint32_t* upper, const std::uint32_t* lower, int column) {
    const int left = std::max(column - 1, 0);
    const Channels middle = channelsOf(upper[column]) + channelsOf(lower[column]);
    return channelsOf(upper[left]) + channelsOf(lower[left]) + middle + middle +
           channelsOf(upper[column + 1]) + channelsOf(lower[column + 1]);
}

void fillChroma(const std::uint32_t* upper, const std::uint32_t* lower, int width, std::uint8_t* blue,
                std::uint8_t* red) {
    constexpr std::int32_t grey = 128;
    for (int x = 0; x < width / 2; ++x) {
        const Channels sum = around(upper, lower, 2 * x);
        blue[x] = weighted<3>(sum, blueWeights, grey);
        red[x] = weighted<3>(sum, redWeights, grey);
    }
}

}  // namespace

PlanarConverter::PlanarConverter(int width, int height)
    : width_(width),
      height_(height),
      planes_(static_cast<std::size_t>(aligned(width) + aligned(width / 2)) *
              static_cast<std::size_t>(height)) {}

PlanarPicture PlanarConverter::picture() {
    const int lumaRow = aligned(width_);
    const int chromaRow = aligned(width_ / 2);
    const std::ptrdiff_t lumaSize = std::ptrdiff_t{lumaRow} * height_;
    const std::ptrdiff_t chromaSize = std::ptrdiff_t{chromaRow} * (height_ / 2);
    PlanarPicture picture;
    picture.width = width_;
    picture.height = height_;
    picture.planes[0] = planes_.data();
    picture.planes[1] = planes_.data() + lumaSize;
    picture.planes[2] = planes_.data() + lumaSize + chromaSize;
    picture.bytesPerRow[0] = lumaRow;
    picture.bytesPerRow[1] = chromaRow;
    picture.bytesPerRow[2] = chromaRow;
    return picture;
}

PlanarPicture PlanarConverter::convert(const std::byte* pixels, std::size_t bytesPerRow) {
    const PlanarPicture made = picture();
    for (int y = 0; y < height_; y += 2) {
        const std::uint32_t* const upper = rowAt(pixels, bytesPerRow, y);
        const std::uint32_t* const lower = rowAt(pixels, bytesPerRow, y + 1);
        std::uint8_t* const luma = made.planes[0] + std::ptrdiff_t{y} * made.bytesPerRow[0];
        fillLuma(upper, width_, luma);
        fillLuma(lower, width_, luma + made.bytesPerRow[0]);
        const std::ptrdiff_t half = y / 2;
        fillChroma(upper, lower, width_, made.planes[1] + half * made.bytesPerRow[1],
                   made.planes[2] + half * made.bytesPerRow[2]);
    }
    return made;
}

}  // namespace mireth::platform
