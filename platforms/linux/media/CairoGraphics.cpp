#include "platforms/linux/media/CairoGraphics.hpp"

#include <cstdint>

#include "platforms/linux/media/CairoContext.hpp"
#include "platforms/linux/media/CairoImageRenderer.hpp"

namespace mireth::platform {

namespace {

constexpr std::size_t maximumSide = 16'384;
constexpr std::size_t bytesPerPixel = sizeof(std::uint32_t);

bool fitsTogether(const BitmapDescription& bitmap) {
    if (bitmap.width == 0 || bitmap.height == 0 || bitmap.width > maximumSide ||
        bitmap.height > maximumSide) {
        return false;
    }
    const std::size_t row = bitmap.width * bytesPerPixel;
    const bool isAligned = bitmap.bytesPerRow % bytesPerPixel == 0 &&
                           reinterpret_cast<std::uintptr_t>(bitmap.bytes.data()) % bytesPerPixel == 0;
    // A longer row than any image could have would only overflow the multiplication below.
    return isAligned && bitmap.bytesPerRow >= row && bitmap.bytesPerRow <= bitmap.bytes.size() &&
           bitmap.bytesPerRow * (bitmap.height - 1) + row <= bitmap.bytes.size();
}

}  // namespace

std::unique_ptr<ImageRenderer> CairoGraphics::makeImageRenderer(Size size, ImageRendererFormat format) {
    return std::make_unique<CairoImageRenderer>(size, format);
}

std::unique_ptr<GraphicsContext> CairoGraphics::makeBitmapContext(const BitmapDescription& description) {
    if (!fitsTogether(description)) {
        return nullptr;
    }
    const CairoSurface surface(cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(description.bytes.data()), CAIRO_FORMAT_ARGB32,
        static_cast<int>(description.width), static_cast<int>(description.height),
        static_cast<int>(description.bytesPerRow)));
    auto context = std::make_unique<CairoContext>(surface.get());
    if (!context->isValid()) {
        return nullptr;
    }
    return context;
}

}  // namespace mireth::platform
