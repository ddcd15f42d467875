// A top-level window of the app, made of widgets or of items, which may be gone at any time.
#pragma once

#include <QColor>
#include <QPointer>
#include <QQuickWindow>
#include <QWidget>
#include <QWindow>
#include <vector>

#include "MirethVex/Base/Geometry.hpp"

namespace mireth::qt {

/// Main thread only. A value; it owns nothing.
class LiveWindow {
  public:
    explicit LiveWindow(QWindow& window);
    /// `widget` is a window; its QWindow is looked up when it is there.
    explicit LiveWindow(QWidget& widget) : widget_(&widget) {}

    /// Null when it is gone or not made yet.
    QWindow* window() const;
    /// Null for a window that is not made of widgets.
    QWidget* widget() const { return widget_.data(); }
    /// Null for a window that is not made of items.
    QQuickWindow* quickWindow() const;

    bool isVisible() const;
    /// In device-independent pixels, which are the library's points.
    Size size() const;
    /// Pixels per point: before the window is made, of the screen that it would be shown on; 1 when it is
    /// gone.
    double scale() const;
    /// Of the window's upper left corner on the desktop.
    Point origin() const;
    /// 0 … 1; what lies behind the window shows through it.
    double opacity() const;
    /// A window of widgets that fills nothing by itself. Those of items have a translucent colour.
    bool isTranslucent() const;
    /// What is behind all that the window holds.
    QColor backgroundColor() const;

    /// The visible windows that stand above this one and belong to it: menus, dialogs, tool tips and the
    /// like. In the order in which they were made.
    std::vector<LiveWindow> windowsAbove() const;

    bool operator==(const LiveWindow& other) const;

  private:
    QPointer<QWindow> window_;
    QPointer<QWidget> widget_;
};

}  // namespace mireth::qt
