// Renders images on a Cairo surface that is kept from one image to the next. Private to this folder.
#pragma once

#include <memory>

#include "MirethVex/Platform/Graphics.hpp"
#include "platforms/linux/media/BlockCoverages.hpp"
#include "platforms/linux/media/CairoHandles.hpp"

namespace mireth::platform {

class CairoImageRenderer final : public ImageRenderer {
  public:
    CairoImageRenderer(Size size, ImageRendererFormat format);
    Image image(const std::function<void(GraphicsContext&)>& actions) override;

  private:
    /// A blank surface with the format's scale; null when it cannot be had.
    CairoSurface takeBlankSurface();

    const int width_;   // in pixels; 0 when there is nothing to render
    const int height_;  // in pixels
    const ImageRendererFormat format_;
    /// Kept between images: making and unmapping a megabyte for each frame costs more than clearing it.
    CairoSurface surface_;
    const std::shared_ptr<BlockCoverages> blocks_ = std::make_shared<BlockCoverages>();
};

}  // namespace mireth::platform
