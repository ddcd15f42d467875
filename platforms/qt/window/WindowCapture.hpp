// The passes over a window of the app's that recording it takes.
#pragma once

#include <chrono>
#include <memory>
#include <vector>

#include "MirethVex/Platform/Layer.hpp"
#include "MirethVex/Platform/MainQueue.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "platforms/qt/mirror/ViewMirror.hpp"
#include "platforms/qt/objects/LiveWindow.hpp"
#include "platforms/qt/screens/ScreenWatch.hpp"
#include "platforms/qt/touch/TouchSource.hpp"
#include "platforms/qt/window/WindowEnvironment.hpp"

namespace mireth::qt {

/// Each pass sees one instant, and tells the library which screens have come and gone. Main thread only.
class WindowCapture {
  public:
    using Views = std::vector<std::shared_ptr<platform::View>>;

    /// `window` outlives this object and is told of the touches.
    WindowCapture(platform::Window& window, const LiveWindow& live, const WindowEnvironment& environment);

    /// Of a masked frame, or of the look at what a tap has led to. Until the next call.
    const Views& views();
    /// Of a frame without masking. What has to be painted anew is there when `paintPictures` was called.
    Views unmaskedViews();
    void paintPictures() { mirror_.paintPictures(); }
    /// Of the window itself.
    const platform::Layer& layer();
    /// What is shown until the next recording begins is nobody's business.
    void recordingEnded() noexcept;

  private:
    using SteadyClock = std::chrono::steady_clock;

    void startFrame();
    /// One pass.
    Views look();
    /// When something has changed the screens; only while the window is being recorded.
    void lookAgain();
    /// Between two unmasked frames; not after the last.
    void keepPicturesForAWhile();

    const LiveWindow live_;
    const std::shared_ptr<platform::MainQueue> mainQueue_;
    ViewMirror mirror_;
    platform::Layer layer_;
    Views views_;
    ScreenWatch screens_;
    SteadyClock::time_point lastFrame_;
    bool picturesWereWanted_ = false;
    std::unique_ptr<platform::Timer> whilePicturesAreKept_;
    TouchSource touches_;
};

}  // namespace mireth::qt
