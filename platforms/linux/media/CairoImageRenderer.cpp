#include "platforms/linux/media/CairoImageRenderer.hpp"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

#include "platforms/linux/media/CairoContext.hpp"

namespace mireth::platform {

namespace {

constexpr double maximumSide = 16'384;
constexpr std::uint32_t opaqueAlpha = 0xFF000000U;

/// Rounded up, but for the noise of a multiplication; 0 for a length that cannot be rendered.
int pixels(double points, double scale) {
    const double length = std::ceil(points * scale - 1e-6);
    return length >= 1 && length <= maximumSide ? static_cast<int>(length) : 0;
}

std::vector<std::uint32_t> copyPixels(cairo_surface_t* surface, bool opaque) {
    cairo_surface_flush(surface);
    const auto width = static_cast<std::size_t>(cairo_image_surface_get_width(surface));
    const auto height = static_cast<std::size_t>(cairo_image_surface_get_height(surface));
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
    const unsigned char* bytes = cairo_image_surface_get_data(surface);
    std::vector<std::uint32_t> words(width * height);
    for (std::size_t row = 0; row < height; ++row) {
        std::memcpy(words.data() + row * width, bytes + row * stride, width * sizeof(std::uint32_t));
    }
    if (opaque) {
        // Cairo leaves the unused byte of an opaque pixel undefined.
        for (std::uint32_t& word : words) {
            word |= opaqueAlpha;
        }
    }
    return words;
}

}  // namespace

CairoImageRenderer::CairoImageRenderer(Size size, ImageRendererFormat format)
    : width_(pixels(size.width, format.scale)), height_(pixels(size.height, format.scale)), format_(format) {}

CairoSurface CairoImageRenderer::takeBlankSurface() {
    CairoSurface surface = std::move(surface_);
    if (surface == nullptr) {
        surface.reset(cairo_image_surface_create(format_.opaque ? CAIRO_FORMAT_RGB24 : CAIRO_FORMAT_ARGB32,
                                                 width_, height_));
    } else {
        const CairoHandle eraser(cairo_create(surface.get()));
        cairo_set_operator(eraser.get(), CAIRO_OPERATOR_CLEAR);
        cairo_paint(eraser.get());
    }
    return cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS ? std::move(surface) : nullptr;
}

Image CairoImageRenderer::image(const std::function<void(GraphicsContext&)>& actions) {
    if (width_ == 0 || height_ == 0) {
        return {};
    }
    CairoSurface surface = takeBlankSurface();
    if (surface == nullptr) {
        return {};
    }
    {
        CairoContext context(surface.get(), blocks_);
        context.concatenate(AffineTransform::scale(format_.scale, format_.scale));
        if (actions) {
            actions(context);
        }
    }
    try {
        Image result(static_cast<std::size_t>(width_), static_cast<std::size_t>(height_),
                     copyPixels(surface.get(), format_.opaque), format_.scale);
        surface_ = std::move(surface);
        return result;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

}  // namespace mireth::platform
