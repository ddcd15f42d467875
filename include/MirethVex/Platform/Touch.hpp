// One finger on a window, and what happens to several of them at once.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "MirethVex/Base/Geometry.hpp"

namespace mireth::platform {

class View;
class Window;

enum class TouchPhase { began, moved, stationary, ended, cancelled };

/// The state of one touch at one instant. A value: whoever keeps it keeps that instant.
struct Touch {
    /// The same from a touch's begin to its end or cancellation, and no other touch's in that time.
    std::uint64_t identity = 0;
    TouchPhase phase = TouchPhase::began;
    /// In the coordinates of `window`, in points. Finite, and at most 1e9 either way.
    Point locationInWindow;
    /// How many taps in a row this one completes, by the rules of the toolkit: 1 for a tap by itself. The
    /// same from begin to end.
    int tapCount = 1;
    /// When it happened, in seconds on the uptime clock. Finite, and small enough that its milliseconds fit
    /// 64 bits.
    double timestamp = 0;
    /// What was touched when the touch began (`View::hitTest` of the window finds it); not owned. Expired
    /// when there was none or it is gone.
    std::weak_ptr<View> view;
    /// Where the touch began; not owned.
    std::weak_ptr<Window> window;
};

/// What changed at one instant: every touch that began, moved, ended or was cancelled then.
struct TouchEvent {
    /// In seconds on the uptime clock. The library reads that of each touch only.
    double timestamp = 0;
    /// Each identity once.
    std::vector<Touch> touches;
};

}  // namespace mireth::platform
