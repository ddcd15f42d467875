// Makes the hatched picture that stands for something hidden.
#pragma once

#include <memory>
#include <optional>

#include "MirethVex/Base/Color.hpp"
#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Platform/Graphics.hpp"
#include "MirethVex/Platform/Image.hpp"

namespace mireth {

/// Diagonal stripes that rise to the right, with a border. One thread at a time.
class MaskCreator {
  public:
    /// `screenScale`: pixels per point of the main screen.
    MaskCreator(std::shared_ptr<platform::Graphics> graphics, double screenScale);

    /// The hatched picture in the size of `rect`. Without a bitmap when no surface could be had.
    platform::Image getMask(Rect rect);

    /// One tile of the hatching, `tileSize()` pixels wide and high, made on first use.
    const platform::Image& getTileImage();

    double tileSize() const noexcept { return tileSize_; }
    const Color& stripeColor() const noexcept { return stripeColor_; }
    const Color& bgColor() const noexcept { return bgColor_; }
    double linesWidth() const noexcept { return linesWidth_; }

  private:
    platform::Image createTile();

    const double tileSize_;
    const Color stripeColor_;
    const Color bgColor_;
    const double linesWidth_;
    std::optional<platform::Image> tile_;
    const std::shared_ptr<platform::Graphics> graphics_;
};

}  // namespace mireth
