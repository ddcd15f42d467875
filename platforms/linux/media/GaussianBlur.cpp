#include "platforms/linux/media/GaussianBlur.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace mireth::platform {

namespace {

/// Half widths of three boxes that together have the variance of the Gaussian.
std::array<std::size_t, 3> boxRadii(double sigma) {
    const double ideal = std::sqrt(4 * sigma * sigma + 1);
    auto narrow = static_cast<std::size_t>(ideal);
    if (narrow % 2 == 0) {
        --narrow;
    }
    const auto width = static_cast<double>(narrow);
    // A box of w pixels has the variance (w² − 1) / 12; the next odd width is w + 2.
    const double narrowBoxes =
        std::round((12 * sigma * sigma - 3 * width * width - 12 * width - 9) / (-4 * width - 4));
    std::array<std::size_t, 3> radii{};
    for (std::size_t i = 0; i < radii.size(); ++i) {
        radii[i] = (static_cast<double>(i) < narrowBoxes ? narrow : narrow + 2) / 2;
    }
    return radii;
}

/// Averages each value with the `radius` values on either side of it.
void boxBlur(std::span<const std::uint8_t> from, std::span<std::uint8_t> to, std::size_t radius) {
    const std::size_t count = from.size();
    const auto length = static_cast<std::uint32_t>(2 * radius + 1);
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < std::min(radius, count); ++i) {
        sum += from[i];
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (i + radius < count) {
            sum += from[i + radius];
        }
        to[i] = static_cast<std::uint8_t>((sum + length / 2) / length);
        if (i >= radius) {
            sum -= from[i - radius];
        }
    }
}

}  // namespace

void gaussianBlur(const Mask& mask, double sigma) {
    const auto radii = boxRadii(sigma);
    std::vector<std::uint8_t> line(std::max(mask.width, mask.height));
    std::vector<std::uint8_t> other(line.size());
    const auto blurLine = [&](std::size_t first, std::size_t step, std::size_t count) {
        const std::span<std::uint8_t> a(line.data(), count);
        const std::span<std::uint8_t> b(other.data(), count);
        for (std::size_t i = 0; i < count; ++i) {
            a[i] = mask.bytes[first + i * step];
        }
        boxBlur(a, b, radii[0]);
        boxBlur(b, a, radii[1]);
        boxBlur(a, b, radii[2]);
        for (std::size_t i = 0; i < count; ++i) {
            mask.bytes[first + i * step] = b[i];
        }
    };
    for (std::size_t row = 0; row < mask.height; ++row) {
        blurLine(row * mask.bytesPerRow, 1, mask.width);
    }
    for (std::size_t column = 0; column < mask.width; ++column) {
        blurLine(column, mask.bytesPerRow, mask.height);
    }
}

}  // namespace mireth::platform
