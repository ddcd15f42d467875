#include "platforms/qt/attach/MainWindows.hpp"

#include <QGuiApplication>
#include <QScreen>

#include "platforms/qt/objects/WindowKinds.hpp"

namespace mireth::qt {

namespace {

int areaOf(const QWindow& window) {
    return window.width() * window.height();
}

bool isFrameless(const QWindow& window) {
    return window.flags().testFlag(Qt::FramelessWindowHint);
}

bool fillsItsScreen(const QWindow& window) {
    const QScreen* const screen = window.screen();
    return screen != nullptr && window.width() >= screen->size().width() &&
           window.height() >= screen->size().height();
}

}  // namespace

bool isMainWindow(const QWindow& window) {
    const bool isOfItsOwn = window.parent() == nullptr && window.transientParent() == nullptr;
    const bool isWithinReach = !window.flags().testFlag(Qt::WindowTransparentForInput);
    const bool isManaged = !window.flags().testFlag(Qt::BypassWindowManagerHint) || fillsItsScreen(window);
    return isOfItsOwn && isWithinReach && isManaged && canBeMain(window.type());
}

bool givesWay(const QWindow& recorded, const QWindow& window) {
    if (isDialog(recorded.type()) || isDialog(window.type())) {
        return !isDialog(window.type());
    }
    return isFrameless(recorded) && !isFrameless(window) && areaOf(window) >= areaOf(recorded);
}

QWindow* largestMainWindow() {
    const auto isSmaller = [](const QWindow& one, const QWindow& other) {
        const bool isOneADialog = isDialog(one.type());
        return isOneADialog != isDialog(other.type()) ? isOneADialog : areaOf(one) < areaOf(other);
    };
    QWindow* largest = nullptr;
    for (QWindow* const window : QGuiApplication::topLevelWindows()) {
        const bool isThere = window->isExposed() && isMainWindow(*window);
        if (isThere && (largest == nullptr || isSmaller(*largest, *window))) {
            largest = window;
        }
    }
    return largest;
}

}  // namespace mireth::qt
