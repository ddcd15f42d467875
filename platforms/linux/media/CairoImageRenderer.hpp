// Renders images by Cairo, straight into their pixels. Private to this folder.
#pragma once

#include <memory>

#include "MirethVex/Platform/Graphics.hpp"
#include "platforms/linux/media/BlockCoverages.hpp"

namespace mireth::platform {

class CairoImageRenderer final : public ImageRenderer {
  public:
    CairoImageRenderer(Size size, ImageRendererFormat format);
    Image image(const std::function<void(GraphicsContext&)>& actions) override;

  private:
    const int width_;   // in pixels; 0 when there is nothing to render
    const int height_;  // in pixels
    const ImageRendererFormat format_;
    /// Kept between images.
    const std::shared_ptr<BlockCoverages> blocks_ = std::make_shared<BlockCoverages>();
};

}  // namespace mireth::platform
