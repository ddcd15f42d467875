#include "platforms/qt/pictures/PictureViews.hpp"

#include <algorithm>
#include <cstdint>

#include "platforms/qt/objects/LayerValues.hpp"

namespace mireth::qt {

using platform::Image;

namespace {

bool isOfOneColor(const QImage& picture) {
    const auto first = static_cast<std::uint32_t>(*reinterpret_cast<const QRgb*>(picture.constScanLine(0)));
    for (int y = 0; y < picture.height(); ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        if (!std::all_of(row, row + picture.width(), [first](QRgb pixel) { return pixel == first; })) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::shared_ptr<platform::View> addPictureView(platform::View& view, const QRect& part) {
    auto picture = std::make_shared<platform::View>();
    picture->setFrame({static_cast<double>(part.x()), static_cast<double>(part.y()),
                       static_cast<double>(part.width()), static_cast<double>(part.height())});
    view.addSubview(picture);
    return picture;
}

void makePlainBlock(platform::Layer& layer) {
    constexpr double grey = 188.0 / 255;
    layer.appearance.backgroundColor = Color{grey, grey, grey, 1};
}

QImage emptyPicture(QSize size) {
    QImage picture(size, pictureFormat);
    picture.fill(Qt::transparent);
    return picture;
}

Image smallestImageOf(const QImage& picture) {
    if (picture.isNull()) {
        return {};
    }
    if (!isOfOneColor(picture)) {
        return imageOf(picture);
    }
    const QRgb pixel = *reinterpret_cast<const QRgb*>(picture.constScanLine(0));
    return pixel == 0 ? Image() : Image::filled(1, 1, pixel);
}

}  // namespace mireth::qt
