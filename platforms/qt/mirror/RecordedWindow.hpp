// The window that the library records: a mirror of one of the app's windows.
#pragma once

#include <chrono>
#include <memory>
#include <vector>

#include "MirethVex/Platform/AppearanceDelivery.hpp"
#include "MirethVex/Platform/Clock.hpp"
#include "MirethVex/Platform/MainQueue.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "platforms/qt/mirror/ViewMirror.hpp"
#include "platforms/qt/objects/LiveWindow.hpp"
#include "platforms/qt/screens/ScreenWatch.hpp"
#include "platforms/qt/touch/TouchSource.hpp"

namespace mireth::qt {

/// Its subviews are made anew, in one pass, each time they are asked for, so that all of them show the same
/// instant: while the library hears of the end of a touch, that of its beginning, else now. When the app's
/// window is gone it keeps its last size and is empty. Main thread only.
class RecordedWindow final : public platform::Window {
  public:
    /// What a window takes from the platform.
    struct Environment {
        std::shared_ptr<platform::Clock> clock;
        std::shared_ptr<platform::MainQueue> mainQueue;
        std::shared_ptr<const platform::AppearanceDelivery> appearance;
    };

    RecordedWindow(const LiveWindow& live, const Environment& environment);

    const LiveWindow& live() const noexcept { return live_; }

    const std::vector<std::shared_ptr<platform::View>>& subviews() const override;
    const platform::Layer& layer() const override;
    /// Made anew in a pass of its own, too.
    std::shared_ptr<const platform::View> unmasked() const override;
    double screenScale() const override { return live_.scale(); }

  private:
    using SteadyClock = std::chrono::steady_clock;

    /// A pass.
    std::vector<std::shared_ptr<platform::View>> look() const;
    /// Only while the window is being recorded.
    void lookAgain() const;
    /// Between two unmasked frames; not after the last.
    void keepPicturesForAWhile() const;

    const LiveWindow live_;
    const std::shared_ptr<platform::MainQueue> mainQueue_;
    mutable ViewMirror mirror_;
    mutable platform::Layer rootLayer_;
    mutable std::vector<std::shared_ptr<platform::View>> mirrored_;
    mutable ScreenWatch screens_;
    mutable SteadyClock::time_point lastPass_;
    mutable bool wereWanted_ = false;
    mutable std::unique_ptr<platform::Timer> whilePicturesAreKept_;
    mutable TouchSource touches_;
};

}  // namespace mireth::qt
