// Linux's 2-D graphics: renderers and bitmap contexts on Cairo image surfaces.
#pragma once

#include "MirethVex/Platform/Graphics.hpp"

namespace mireth::platform {

/// Software drawing with 8 bits a channel; an extended range is rendered in the standard one. Any thread.
/// Images are limited to 16,384 pixels a side: a renderer of a larger, empty or senseless size makes images
/// without a bitmap.
class CairoGraphics final : public Graphics {
  public:
    std::unique_ptr<ImageRenderer> makeImageRenderer(Size size, ImageRendererFormat format) override;
    std::unique_ptr<GraphicsContext> makeBitmapContext(const BitmapDescription& description) override;
};

}  // namespace mireth::platform
