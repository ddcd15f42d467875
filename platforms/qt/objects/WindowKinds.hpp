// What can be said of a window by the kind that the app has given it.
#pragma once

#include <Qt>

namespace mireth::qt {

/// Kinds of window that come and go above another one.
constexpr bool isPassing(Qt::WindowType type) {
    switch (type) {
        case Qt::Dialog:
        case Qt::Sheet:
        case Qt::Drawer:
        case Qt::Popup:
        case Qt::Tool:
        case Qt::ToolTip:
        case Qt::SplashScreen:
            return true;
        default:
            return false;
    }
}

/// Of those, the kinds that may be all that an app shows.
constexpr bool isDialog(Qt::WindowType type) {
    return type == Qt::Dialog || type == Qt::Sheet;
}

/// Kinds of window that an app shows its screens in. A window of items that asks for no frame, and for
/// nothing else, is of the kind `Qt::Widget`.
constexpr bool canBeMain(Qt::WindowType type) {
    return type == Qt::Window || type == Qt::Widget || isDialog(type);
}

}  // namespace mireth::qt
