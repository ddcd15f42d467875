#include "platforms/qt/objects/LiveWindow.hpp"

#include <QApplication>
#include <QGuiApplication>
#include <algorithm>

#include "platforms/qt/objects/WindowKinds.hpp"
#include "platforms/qt/objects/WindowsBelow.hpp"

namespace mireth::qt {

namespace {

/// The widget that fills `window`; null for a window without widgets.
QWidget* widgetOf(const QWindow& window) {
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
        return nullptr;
    }
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->windowHandle() == &window) {
            return widget;
        }
    }
    return nullptr;
}

/// What is minimised is visible for Qt.
bool isOnTheDesktop(const QWindow& window) {
    return window.isVisible() && !window.windowStates().testFlag(Qt::WindowMinimized);
}

bool standsAbove(const QWindow& window, const QWindow& below) {
    if (window.transientParent() == nullptr) {
        return isPassing(window.type());
    }
    const auto owners = windowsBelow(window);
    return std::ranges::find(owners, &below) != owners.end();
}

}  // namespace

LiveWindow::LiveWindow(QWindow& window) : window_(&window), widget_(widgetOf(window)) {}

QWindow* LiveWindow::window() const {
    if (window_ != nullptr) {
        return window_;
    }
    return widget_ != nullptr ? widget_->windowHandle() : nullptr;
}

QQuickWindow* LiveWindow::quickWindow() const {
    return widget_ != nullptr ? nullptr : qobject_cast<QQuickWindow*>(window());
}

bool LiveWindow::isVisible() const {
    if (widget_ != nullptr) {
        return widget_->isVisible();
    }
    const QWindow* const live = window();
    return live != nullptr && live->isVisible();
}

Size LiveWindow::size() const {
    QSize size;
    if (widget_ != nullptr) {
        size = widget_->size();
    } else if (const QWindow* const live = window()) {
        size = live->size();
    }
    return {static_cast<double>(size.width()), static_cast<double>(size.height())};
}

double LiveWindow::scale() const {
    double scale = 1;
    if (const QWindow* const live = window()) {
        scale = live->devicePixelRatio();
    } else if (widget_ != nullptr) {
        scale = widget_->devicePixelRatioF();
    }
    return scale > 0 ? scale : 1;
}

Point LiveWindow::origin() const {
    const QWindow* const live = window();
    const QPoint origin = live != nullptr ? live->mapToGlobal(QPoint(0, 0)) : QPoint();
    return {static_cast<double>(origin.x()), static_cast<double>(origin.y())};
}

double LiveWindow::opacity() const {
    const QWindow* const live = window();
    return live != nullptr ? live->opacity() : 1.0;
}

bool LiveWindow::isTranslucent() const {
    return widget_ != nullptr && widget_->testAttribute(Qt::WA_TranslucentBackground);
}

QColor LiveWindow::backgroundColor() const {
    if (widget_ != nullptr) {
        return widget_->palette().color(widget_->backgroundRole());
    }
    const QQuickWindow* const quick = quickWindow();
    return quick != nullptr ? quick->color() : QColor();
}

std::vector<LiveWindow> LiveWindow::windowsAbove() const {
    std::vector<LiveWindow> above;
    const QWindow* const below = window();
    if (below == nullptr) {
        return above;
    }
    for (QWindow* const candidate : QGuiApplication::topLevelWindows()) {
        if (candidate != below && isOnTheDesktop(*candidate) && standsAbove(*candidate, *below)) {
            above.emplace_back(*candidate);
        }
    }
    return above;
}

bool LiveWindow::operator==(const LiveWindow& other) const {
    return window() == other.window() && widget_ == other.widget_ &&
           (window() != nullptr || widget_ != nullptr);
}

}  // namespace mireth::qt
