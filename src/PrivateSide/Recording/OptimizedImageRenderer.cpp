#include "PrivateSide/Recording/OptimizedImageRenderer.hpp"

namespace mireth {

using platform::GraphicsContext;
using platform::Image;
using platform::ImageRendererFormat;

OptimizedImageRenderer::OptimizedImageRenderer(platform::Graphics& graphics, Size size)
    : OptimizedImageRenderer(graphics, Rect{0, 0, size.width, size.height}) {}

OptimizedImageRenderer::OptimizedImageRenderer(platform::Graphics& graphics, Rect bounds)
    : bounds_(bounds), renderer_(graphics.makeImageRenderer(bounds.size(), format())) {}

Image OptimizedImageRenderer::image(const Actions& actions) {
    if (renderer_ == nullptr) {
        return {};
    }
    if (bounds_.origin() == Point{}) {
        return renderer_->image(actions);
    }
    return renderer_->image([this, &actions](GraphicsContext& context) {
        context.concatenate(AffineTransform::translation(-bounds_.x, -bounds_.y));
        actions(context);
    });
}

ImageRendererFormat OptimizedImageRenderer::format() {
    ImageRendererFormat format;
    format.scale = 1.0;
    format.opaque = true;
    format.preferredRange = ImageRendererFormat::Range::standard;
    return format;
}

}  // namespace mireth
