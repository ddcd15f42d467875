#include "platforms/linux/media/CairoImageRenderer.hpp"

#include <cmath>
#include <cstdint>
#include <memory>
#include <span>

#include "platforms/linux/media/CairoContext.hpp"
#include "platforms/linux/media/CairoHandles.hpp"
#include "platforms/linux/media/MappedPixels.hpp"

namespace mireth::platform {

namespace {

constexpr double maximumSide = 16'384;
constexpr std::uint32_t opaqueAlpha = 0xFF000000U;

/// Rounded up, but for the noise of a multiplication; 0 for a length that cannot be rendered.
int pixels(double points, double scale) {
    const double length = std::ceil(points * scale - 1e-6);
    return length >= 1 && length <= maximumSide ? static_cast<int>(length) : 0;
}

/// Runs `actions` on `words`, the pixels of an image. False when there is no surface to be had.
bool draw(std::uint32_t* words, int width, int height, const ImageRendererFormat& format,
          const std::shared_ptr<BlockCoverages>& blocks,
          const std::function<void(GraphicsContext&)>& actions) {
    const CairoSurface surface(cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(words), format.opaque ? CAIRO_FORMAT_RGB24 : CAIRO_FORMAT_ARGB32,
        width, height, width * static_cast<int>(sizeof(std::uint32_t))));
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) {
        return false;
    }
    {
        CairoContext context(surface.get(), blocks);
        context.concatenate(AffineTransform::scale(format.scale, format.scale));
        if (actions) {
            actions(context);
        }
    }
    cairo_surface_finish(surface.get());
    return true;
}

}  // namespace

CairoImageRenderer::CairoImageRenderer(Size size, ImageRendererFormat format)
    : width_(pixels(size.width, format.scale)), height_(pixels(size.height, format.scale)), format_(format) {}

Image CairoImageRenderer::image(const std::function<void(GraphicsContext&)>& actions) {
    if (width_ == 0 || height_ == 0) {
        return {};
    }
    const auto width = static_cast<std::size_t>(width_);
    const auto height = static_cast<std::size_t>(height_);
    const auto words = mapPixels(width * height);
    if (words == nullptr || !draw(words.get(), width_, height_, format_, blocks_, actions)) {
        return {};
    }
    if (format_.opaque) {
        // Cairo leaves the unused byte of an opaque pixel undefined.
        for (std::uint32_t& word : std::span(words.get(), width * height)) {
            word |= opaqueAlpha;
        }
    }
    return Image::sharing(width, height, words, format_.scale);
}

}  // namespace mireth::platform
