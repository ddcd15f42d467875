// The window that the library records: a mirror of one of the app's windows.
#pragma once

#include <memory>
#include <vector>

#include "MirethVex/Platform/Window.hpp"
#include "platforms/qt/objects/LiveWindow.hpp"
#include "platforms/qt/window/WindowEnvironment.hpp"

namespace mireth::qt {

class WindowCapture;

/// Its subviews are made anew, in one pass, each time they are asked for, so that all of them show the same
/// instant: while the library hears of the end of a touch, that of its beginning, else now. When the app's
/// window is gone it keeps its last size and is empty. Main thread only.
class RecordedWindow final : public platform::Window {
  public:
    RecordedWindow(const LiveWindow& live, const WindowEnvironment& environment);
    ~RecordedWindow() override;

    const LiveWindow& live() const noexcept { return live_; }

    const std::vector<std::shared_ptr<platform::View>>& subviews() const override;
    const platform::Layer& layer() const override;
    /// Made anew in a pass of its own, too.
    std::shared_ptr<const platform::View> unmasked() const override;
    double screenScale() const override { return live_.scale(); }

  protected:
    void gestureRecognizersDidChange() override;

  private:
    const LiveWindow live_;
    /// Works whenever the window is asked for something.
    const std::unique_ptr<WindowCapture> capture_;
};

}  // namespace mireth::qt
