// Which of the library's windows stands for which of Qt's.
#pragma once

#include <QWidget>
#include <QWindow>
#include <memory>
#include <utility>
#include <vector>

#include "platforms/qt/objects/LiveWindow.hpp"
#include "platforms/qt/window/RecordedWindow.hpp"
#include "platforms/qt/window/WindowEnvironment.hpp"

namespace mireth::qt {

/// Main thread only. A window that is still in use somewhere is given out again, not made anew.
class RecordedWindows {
  public:
    explicit RecordedWindows(WindowEnvironment environment) : environment_(std::move(environment)) {}

    /// For the window of a QQuickWidget's items: the one that the widget is in.
    std::shared_ptr<RecordedWindow> of(QWindow& window);
    /// The top-level window that holds `widget`; it need not be shown yet.
    std::shared_ptr<RecordedWindow> of(QWidget& widget);

  private:
    std::shared_ptr<RecordedWindow> find(const LiveWindow& live);

    const WindowEnvironment environment_;
    std::vector<std::weak_ptr<RecordedWindow>> known_;
};

}  // namespace mireth::qt
