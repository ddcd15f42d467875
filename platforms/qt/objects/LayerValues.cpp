#include "platforms/qt/objects/LayerValues.hpp"

#include <QImage>
#include <QString>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace mireth::qt {

std::optional<Color> colorOf(const QColor& color) {
    if (!color.isValid() || color.alpha() == 0) {
        return std::nullopt;
    }
    const QColor rgb = color.toRgb();
    return Color{static_cast<double>(rgb.redF()), static_cast<double>(rgb.greenF()),
                 static_cast<double>(rgb.blueF()), static_cast<double>(rgb.alphaF())};
}

void place(platform::Layer& layer, Size size, const QTransform& toSuperlayer) {
    if (!toSuperlayer.isAffine()) {
        const QRectF held = toSuperlayer.mapRect(QRectF(0, 0, size.width, size.height));
        layer.setFrame({held.x(), held.y(), held.width(), held.height()});
        return;
    }
    layer.geometry.anchorPoint = {0, 0};
    layer.geometry.bounds = {0, 0, size.width, size.height};
    layer.geometry.position = {toSuperlayer.dx(), toSuperlayer.dy()};
    if (toSuperlayer.type() > QTransform::TxTranslate) {
        layer.transform.transform = Transform3D::fromAffine(
            {toSuperlayer.m11(), toSuperlayer.m12(), toSuperlayer.m21(), toSuperlayer.m22(), 0, 0});
    }
}

platform::Image imageOf(const QImage& image) {
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const auto width = static_cast<std::size_t>(pixels.width());
    const auto height = static_cast<std::size_t>(pixels.height());
    std::vector<std::uint32_t> words(width * height);
    for (std::size_t row = 0; row < height; ++row) {
        std::memcpy(words.data() + row * width, pixels.constScanLine(static_cast<int>(row)),
                    width * sizeof(std::uint32_t));
    }
    return {width, height, std::move(words)};
}

std::string textOf(const QString& text) {
    return text.toStdString();
}

}  // namespace mireth::qt
