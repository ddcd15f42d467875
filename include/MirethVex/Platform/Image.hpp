// A still picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Base/Geometry.hpp"

namespace mireth::platform {

/// An immutable bitmap, shared by reference: copies cost nothing and may be read on any thread.
/// A pixel is one native 32-bit word 0xAARRGGBB, colours premultiplied by alpha; rows run from the top.
class MIRETH_EXPORT Image {
  public:
    /// An image without a bitmap, of size zero.
    Image() = default;

    /// Takes `pixels` (`width` × `height` words, no padding). `scale` is pixels per point, > 0; 1 is taken
    /// for any other. A count that does not fit width × height is a fatal error.
    Image(std::size_t width, std::size_t height, std::vector<std::uint32_t> pixels, double scale = 1.0);

    /// A bitmap of one colour word.
    static Image filled(std::size_t width, std::size_t height, std::uint32_t pixel, double scale = 1.0);

    /// A bitmap in memory of another kind, `width` × `height` words that nobody changes any more; it is kept
    /// until the last copy of the image is gone. Without pixels there is no bitmap.
    static Image sharing(std::size_t width, std::size_t height, std::shared_ptr<const std::uint32_t> pixels,
                         double scale = 1.0);

    bool hasBitmap() const noexcept { return pixels_ != nullptr; }
    std::size_t pixelWidth() const noexcept { return width_; }
    std::size_t pixelHeight() const noexcept { return height_; }
    double scale() const noexcept { return scale_; }
    /// In points: pixels divided by the scale.
    Size size() const noexcept {
        return {static_cast<double>(width_) / scale_, static_cast<double>(height_) / scale_};
    }
    /// Row after row; empty without a bitmap. Lives as long as any copy of the image.
    std::span<const std::uint32_t> pixels() const noexcept { return {pixels_.get(), width_ * height_}; }
    /// True when both share the same bitmap.
    bool isSameBitmap(const Image& other) const noexcept { return pixels_ == other.pixels_; }

  private:
    /// Null where the size is zero, and only there.
    std::shared_ptr<const std::uint32_t> pixels_;
    std::size_t width_ = 0;
    std::size_t height_ = 0;
    double scale_ = 1.0;
};

}  // namespace mireth::platform
