// The colours of windows in tests.
#pragma once

#include <QColor>
#include <QPalette>
#include <cstdlib>

namespace mireth::qttest {

/// With windows as grey as those of the scenes.
inline QPalette greyPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(240, 240, 240));
    return palette;
}

inline bool isNear(QRgb seen, int red, int green, int blue) {
    return std::abs(qRed(seen) - red) <= 3 && std::abs(qGreen(seen) - green) <= 3 &&
           std::abs(qBlue(seen) - blue) <= 3;
}

}  // namespace mireth::qttest
