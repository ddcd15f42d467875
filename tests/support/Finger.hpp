// A finger on a window: sends what a toolkit would send for it.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "MirethVex/Platform/Window.hpp"

namespace mireth::test {

/// Fingers on one window at the same time have different identities. Sends nothing once the window is gone.
class Finger {
  public:
    explicit Finger(std::weak_ptr<platform::Window> window, std::uint64_t identity = 1) {
        touch_.identity = identity;
        touch_.window = std::move(window);
    }

    /// `seconds` on the uptime clock; they stay until another call names others.
    void begin(Point at, double seconds = 1, int tapCount = 1) {
        touch_.locationInWindow = at;
        touch_.timestamp = seconds;
        touch_.tapCount = tapCount;
        if (const auto window = touch_.window.lock()) {
            touch_.view = window->hitTest(at);
        }
        send(platform::TouchPhase::began);
    }
    void moveTo(Point point) {
        touch_.locationInWindow = point;
        send(platform::TouchPhase::moved);
    }
    void end() { send(platform::TouchPhase::ended); }
    void end(double seconds) {
        touch_.timestamp = seconds;
        end();
    }
    /// Somewhere else than the last place that was told, without a move there.
    void endAt(Point point, double seconds) {
        touch_.locationInWindow = point;
        end(seconds);
    }
    void cancel() { send(platform::TouchPhase::cancelled); }
    void tap(Point at, double seconds = 1, int tapCount = 1) {
        begin(at, seconds, tapCount);
        end();
    }

    /// The touch as it was sent last.
    const platform::Touch& touch() const noexcept { return touch_; }

  private:
    void send(platform::TouchPhase phase) {
        touch_.phase = phase;
        if (const auto window = touch_.window.lock()) {
            window->sendEvent({touch_.timestamp, {touch_}});
        }
    }

    platform::Touch touch_;
};

}  // namespace mireth::test
