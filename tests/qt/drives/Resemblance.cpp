#include "qt/drives/Resemblance.hpp"

#include <algorithm>
#include <cstdlib>

#include "qt/support/Pictures.hpp"

namespace mireth::qttest {

namespace {

bool isGrey(QRgb pixel, int grey, int tolerance) {
    return std::abs(qGray(pixel) - grey) <= tolerance && saturation(pixel) <= tolerance;
}

int kindInFrame(QRgb pixel) {
    constexpr int blur = 10;
    constexpr int maskGrey = 188;
    return isGrey(pixel, windowGrey, blur) ? Sketch::background
           : isGrey(pixel, maskGrey, blur) ? Sketch::mask
                                           : Sketch::nothing;
}

int kindOnScreen(QRgb pixel) {
    constexpr int strong = 100;
    return saturation(pixel) > strong     ? Sketch::text
           : isGrey(pixel, windowGrey, 2) ? Sketch::background
                                          : Sketch::nothing;
}

}  // namespace

Sketch::Sketch(const QImage& frame)
    : size_(frame.size()), kinds_(static_cast<std::size_t>(size_.width() * size_.height())) {
    for (int y = 0; y < size_.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(frame.constScanLine(y));
        for (int x = 0; x < size_.width(); ++x) {
            kinds_[indexOf(x, y)] = static_cast<std::uint8_t>(kindInFrame(line[x]));
        }
    }
}

Sketch::Sketch(const QImage& window, const QRect& area)
    : size_(area.right() + 1, area.bottom() + 1),
      kinds_(static_cast<std::size_t>(size_.width() * size_.height())) {
    for (int y = 0; y < window.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(window.constScanLine(y));
        const int frameY = area.top() + y * area.height() / window.height();
        for (int x = 0; x < window.width(); ++x) {
            auto& kinds = kinds_[indexOf(area.left() + x * area.width() / window.width(), frameY)];
            kinds = static_cast<std::uint8_t>(kinds | kindOnScreen(line[x]));
        }
    }
}

bool Sketch::hasAt(int x, int y, int kinds) const {
    return x >= 0 && y >= 0 && x < size_.width() && y < size_.height() &&
           (kinds_[indexOf(x, y)] & kinds) != 0;
}

bool Sketch::hasBeside(int x, int y, int kinds) const {
    for (int besideY = y - 1; besideY <= y + 1; ++besideY) {
        for (int besideX = x - 1; besideX <= x + 1; ++besideX) {
            if (hasAt(besideX, besideY, kinds)) {
                return true;
            }
        }
    }
    return false;
}

Resemblance compare(const Sketch& frame, const Sketch& screen) {
    Resemblance found;
    for (int y = 0; y < screen.size().height(); ++y) {
        for (int x = 0; x < screen.size().width(); ++x) {
            if (screen.hasAt(x, y, Sketch::text)) {
                ++found.text;
                found.bareText += frame.hasBeside(x, y, Sketch::mask | Sketch::background) ? 0 : 1;
            }
            if (frame.hasAt(x, y, Sketch::background)) {
                ++found.background;
                found.rightBackground += screen.hasBeside(x, y, Sketch::background) ? 1 : 0;
            }
        }
    }
    return found;
}

}  // namespace mireth::qttest
