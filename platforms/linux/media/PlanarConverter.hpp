// Turns frames of 32-bit words into the planes that the H.264 encoder takes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace mireth::platform {

/// A frame in planes of luma and of chroma at half the width and height (4:2:0). Colours are ITU-R BT.601
/// with the limited range, of sRGB primaries and transfer. The planes belong to the converter.
struct PlanarPicture {
    std::uint8_t* planes[3] = {};
    int bytesPerRow[3] = {};
    int width = 0;
    int height = 0;
};

/// Converts frames of one size, the same way on every machine. One thread at a time.
class PlanarConverter {
  public:
    /// `width` and `height` are even and positive.
    PlanarConverter(int width, int height);

    /// `pixels` are rows of native words 0xAARRGGBB with premultiplied colours, `bytesPerRow` apart. What is
    /// transparent comes out as if it lay on black. The picture stays good until the next call.
    PlanarPicture convert(const std::byte* pixels, std::size_t bytesPerRow);

  private:
    PlanarPicture picture();

    int width_;
    int height_;
    std::vector<std::uint8_t> planes_;
};

}  // namespace mireth::platform
