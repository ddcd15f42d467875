// Touches as events of the window, one for each instant of each finger.
#include "phone/TouchPlayer.hpp"

#include <utility>

namespace mireth::phone {

namespace {

Point between(Point from, Point to, double part) {
    return {from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part};
}

}  // namespace

TouchPlayer::TouchPlayer(const headless::HeadlessClock& clock, const ScreenSet& screens, ScriptTimers& timers,
                         React react)
    : clock_(clock), screens_(screens), timers_(timers), react_(std::move(react)) {}

void TouchPlayer::play(const TapStep& tapped) {
    tap(tapped.at);
    if (tapped.times > 1) {
        // Set after the end of this touch, and so behind it when both are due at one instant.
        timers_.set(tapped.interval,
                    [this, rest = TapStep{tapped.at, tapped.times - 1, tapped.interval}] { play(rest); });
    }
}

void TouchPlayer::play(const SwipeStep& swipe) {
    const auto touch = begin(swipe.from);
    // The finger is lifted one pause after its last move, as every move comes one after the last.
    constexpr int pauses = movesOfASwipe + 1;
    for (int index = 1; index < pauses; ++index) {
        const Point to = between(swipe.from, swipe.to, static_cast<double>(index) / pauses);
        timers_.set(swipe.duration * index / pauses,
                    [this, touch, to] { send(touch, platform::TouchPhase::moved, to); });
    }
    timers_.set(swipe.duration, [this, touch, to = swipe.to] { end(touch, to); });
}

void TouchPlayer::play(const CancelledTouchStep& cancelled) {
    const auto touch = begin(cancelled.at);
    timers_.set(touchDuration,
                [this, touch] { send(touch, platform::TouchPhase::cancelled, touch.locationInWindow); });
}

void TouchPlayer::tap(Point at) {
    timers_.set(touchDuration, [this, touch = begin(at)] { endTap(touch); });
}

platform::Touch TouchPlayer::begin(Point at) {
    platform::Touch touch;
    touch.identity = nextIdentity_++;
    touch.tapCount = tapCounter_.countOf(at, clock_.uptimeSeconds());
    touch.view = screens_.window()->hitTest(at);
    touch.window = screens_.window();
    return send(std::move(touch), platform::TouchPhase::began, at);
}

void TouchPlayer::end(const platform::Touch& touch, Point at) {
    tapCounter_.touchEnded(send(touch, platform::TouchPhase::ended, at));
}

void TouchPlayer::endTap(const platform::Touch& touch) {
    const Point at = touch.locationInWindow;
    end(touch, at);
    const auto* begun = screens_.reactionsOf(touch.view.lock());
    // What has gone, or is covered by another view now, does not react.
    const auto* ended = screens_.reactionsOf(screens_.window()->hitTest(at));
    if (begun != nullptr && begun == ended) {
        react_(*begun);
    }
}

platform::Touch TouchPlayer::send(platform::Touch touch, platform::TouchPhase phase, Point location) {
    touch.phase = phase;
    touch.locationInWindow = location;
    touch.timestamp = clock_.uptimeSeconds();
    screens_.window()->sendEvent({touch.timestamp, {touch}});
    return touch;
}

}  // namespace mireth::phone
