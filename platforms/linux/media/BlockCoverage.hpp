// How much of each pixel a block or a border covers. Private to this folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace mireth::platform {

/// What the edges of a rounded rectangle look like on the grid of pixels, wherever and however large it is.
struct BlockShape {
    /// How far each side lies beyond the start of its pixel, in 256ths.
    std::uint8_t left = 0;
    std::uint8_t top = 0;
    std::uint8_t right = 0;
    std::uint8_t bottom = 0;
    /// In pixels.
    double radius = 0;
    /// The width of a border, in pixels; 0 for a filled block.
    double border = 0;

    bool operator==(const BlockShape&) const = default;
};

/// The smallest block of a shape, as Cairo draws it; a larger one has its middle row and column more often.
/// A pixel outside has 0, one inside 255.
class BlockCoverage {
  public:
    explicit BlockCoverage(const BlockShape& shape);

    /// How many pixels the corners and edges of a shape take up at each end. Larger blocks than twice that
    /// have all their pixels in the smallest one.
    static int marginOf(const BlockShape& shape);

    int margin() const noexcept { return margin_; }
    /// A row of the smallest block, which has twice the margin and one pixels a side.
    std::span<const std::uint8_t> row(int number) const {
        const auto side = 2 * static_cast<std::size_t>(margin_) + 1;
        return std::span(coverage_).subspan(static_cast<std::size_t>(number) * side, side);
    }

  private:
    const int margin_;
    std::vector<std::uint8_t> coverage_;
};

}  // namespace mireth::platform
