// Renders images in the form that frames need: one pixel a point, no alpha, standard colours.
#pragma once

#include <functional>
#include <memory>

#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Platform/Graphics.hpp"

namespace mireth {

/// One thread at a time. It is made by size or by bounds; a renderer with another format would bring back
/// the pixels and the alpha that this one is there to save, so there is no way to ask for one.
class OptimizedImageRenderer {
  public:
    using Actions = std::function<void(platform::GraphicsContext&)>;

    OptimizedImageRenderer(platform::Graphics& graphics, Size size);
    /// The image shows `bounds`: its origin lies at the image's top left.
    OptimizedImageRenderer(platform::Graphics& graphics, Rect bounds);
    OptimizedImageRenderer(platform::Graphics& graphics, Size size,
                           platform::ImageRendererFormat format) = delete;
    OptimizedImageRenderer(platform::Graphics& graphics, Rect bounds,
                           platform::ImageRendererFormat format) = delete;

    /// Runs `actions` on a fresh black picture. An image without a bitmap when no surface could be had.
    platform::Image image(const Actions& actions);

    Size size() const { return bounds_.size(); }

    /// Scale 1, opaque, standard range.
    static platform::ImageRendererFormat format();

  private:
    const Rect bounds_;
    const std::unique_ptr<platform::ImageRenderer> renderer_;
};

}  // namespace mireth
