// What a recorded window looks like, and whether something of the app's is to be seen in it.
#pragma once

#include <QColor>
#include <QImage>
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "MirethVex/Platform/Window.hpp"
#include "PrivateSide/Extensions/CALayerExtensions/LayerReplicator.hpp"
#include "PrivateSide/Recording/OptimizedImageRenderer.hpp"
#include "platforms/linux/media/CairoGraphics.hpp"

namespace mireth::qttest {

/// A copy; the alpha is dropped.
inline QImage pictureOf(const platform::Image& image) {
    QImage picture(static_cast<int>(image.pixelWidth()), static_cast<int>(image.pixelHeight()),
                   QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        std::copy_n(image.pixels().data() + static_cast<std::size_t>(y) * image.pixelWidth(),
                    image.pixelWidth(), reinterpret_cast<std::uint32_t*>(picture.scanLine(y)));
    }
    return picture;
}

/// The frame that would be recorded now, one pixel a point.
inline QImage recordedPicture(const platform::Window& window,
                              std::vector<const platform::ViewClass*> masked = {},
                              bool withEnabledMasking = true) {
    const auto layers = LayerReplicator(std::move(masked)).replicateLayerTree(window, withEnabledMasking);
    platform::CairoGraphics graphics;
    OptimizedImageRenderer renderer(graphics, window.frame().size());
    const auto image = renderer.image([&](platform::GraphicsContext& context) { layers->render(context); });
    return pictureOf(image);
}

/// The frame of a recording without masking.
inline QImage unmaskedPicture(const platform::Window& window) {
    return recordedPicture(window, {}, false);
}

/// The difference between a colour's strongest and weakest channel: 0 for any grey.
inline int saturation(QRgb pixel) {
    const auto [weakest, strongest] = std::minmax({qRed(pixel), qGreen(pixel), qBlue(pixel)});
    return strongest - weakest;
}

/// Canaries have saturated colours; all else is grey. Nothing when there is none.
inline std::optional<std::string> findCanary(const QImage& picture, int tolerance = 40) {
    const QImage pixels = picture.depth() == 32 ? picture : picture.convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < pixels.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(pixels.constScanLine(y));
        const auto* const end = line + pixels.width();
        const auto* const found =
            std::find_if(line, end, [=](QRgb pixel) { return saturation(pixel) > tolerance; });
        if (found != end) {
            return QColor(*found).name().toStdString() + " at " + std::to_string(found - line) + ", " +
                   std::to_string(y);
        }
    }
    return std::nullopt;
}

/// The colour of a mask block.
inline constexpr QRgb maskBlock = 0xFFBCBCBC;

inline bool isMaskBlock(QRgb pixel) {
    return std::abs(qRed(pixel) - 188) <= 1 && saturation(pixel) <= 1;
}

/// True when there is a block anywhere.
inline bool hasMask(const QImage& recorded) {
    for (int y = 0; y < recorded.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(recorded.constScanLine(y));
        if (std::any_of(line, line + recorded.width(), isMaskBlock)) {
            return true;
        }
    }
    return false;
}

/// True when a block stands where `shown` has a canary, in the recorded picture of the window in which what
/// is shown has its upper left corner at `place`.
inline bool isMaskedAt(const QImage& recorded, const QImage& shown, QPoint place = {}) {
    const double scale = shown.devicePixelRatio();
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const QPoint seen = place + QPoint(static_cast<int>(x / scale), static_cast<int>(y / scale));
            if (saturation(shown.pixel(x, y)) > 40 && recorded.rect().contains(seen) &&
                isMaskBlock(recorded.pixel(seen))) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace mireth::qttest
