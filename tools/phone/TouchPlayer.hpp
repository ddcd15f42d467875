// Plays the fingers of a user on the phone's window.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <vector>

#include "MirethVex/Headless/HeadlessClock.hpp"
#include "MirethVex/Platform/TapCounter.hpp"
#include "MirethVex/Platform/Touch.hpp"
#include "phone/ScreenSet.hpp"
#include "phone/ScriptTimers.hpp"
#include "phone/Steps.hpp"

namespace mireth::phone {

/// Main thread only. What it is given outlives it and all that it set off.
///
/// A touch is delivered to the window; once the recognisers have seen its end, the app reacts with what the
/// touched view's `onTap` says.
class TouchPlayer {
  public:
    using React = std::function<void(const std::vector<Reaction>&)>;

    /// From the beginning of a tap to its end, and of a touch to its cancellation.
    static constexpr std::chrono::milliseconds touchDuration{80};
    static constexpr int movesOfASwipe = 5;
    /// What makes a tap count on, in seconds and points.
    static constexpr double runInterval = 0.35;
    static constexpr double runDistance = 40;

    TouchPlayer(const headless::HeadlessClock& clock, const ScreenSet& screens, ScriptTimers& timers,
                React react);
    TouchPlayer(const TouchPlayer&) = delete;
    TouchPlayer& operator=(const TouchPlayer&) = delete;

    void play(const TapStep& tap);
    void play(const SwipeStep& swipe);
    void play(const CancelledTouchStep& cancelled);

  private:
    void tap(Point at);
    platform::Touch begin(Point at);
    void end(const platform::Touch& touch, Point at);
    void endTap(const platform::Touch& touch);
    platform::Touch send(platform::Touch touch, platform::TouchPhase phase, Point location);

    const headless::HeadlessClock& clock_;
    const ScreenSet& screens_;
    ScriptTimers& timers_;
    const React react_;
    platform::TapCounter tapCounter_{runInterval, runDistance};
    std::uint64_t nextIdentity_ = 1;
};

}  // namespace mireth::phone
