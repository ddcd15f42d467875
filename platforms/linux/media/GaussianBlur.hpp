// Blurs 8-bit masks. Used for shadows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace mireth::platform {

/// A mask of 8-bit coverages in memory of the caller's.
struct Mask {
    std::span<std::uint8_t> bytes;
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t bytesPerRow = 0;
};

/// Blurs with a Gaussian of standard deviation `sigma` pixels, made of three box blurs in each direction;
/// beyond its edges the mask is empty. The time does not depend on `sigma`.
void gaussianBlur(const Mask& mask, double sigma);

}  // namespace mireth::platform
