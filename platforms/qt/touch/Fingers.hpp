// The fingers that are on a window, and what each of them has done.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "MirethVex/Platform/TapCounter.hpp"
#include "MirethVex/Platform/Window.hpp"

class QPointingDevice;

namespace mireth::qt {

/// Makes the touches that the library hears of out of where fingers are. One that stays within the platform's
/// drag distance of where it began has not moved, as for Qt's own buttons. Main thread only.
class Fingers {
  public:
    using Views = std::vector<std::shared_ptr<platform::View>>;
    /// Tells those apart that are down at the same time.
    using Key = std::uint64_t;

    struct Press {
        /// Only to be compared: it may be gone.
        const QPointingDevice* device = nullptr;
        Point location;
        std::weak_ptr<platform::Window> window;
        /// What the window shows, before the app hears of it.
        std::shared_ptr<const Views> shown;
    };

    bool contains(Key key) const { return fingers_.contains(key); }

    // Each adds what there is to tell to `event`; of a finger that is not down there is nothing.

    /// `key` is not down.
    void begin(platform::TouchEvent& event, Key key, Press press);
    void move(platform::TouchEvent& event, Key key, Point location);
    /// Where it was last, if there is no `location`. What the press brought along; null if it was not down.
    std::shared_ptr<const Views> end(platform::TouchEvent& event, Key key, std::optional<Point> location);
    void cancel(platform::TouchEvent& event, Key key);
    void cancelAllOf(platform::TouchEvent& event, const QPointingDevice* device);

  private:
    struct Finger {
        platform::Touch touch;
        const QPointingDevice* device = nullptr;
        std::shared_ptr<const Views> shownAtPress;
        bool hasMoved = false;
    };

    platform::TapCounter& counter();

    std::map<Key, Finger> fingers_;
    std::optional<platform::TapCounter> counter_;
    std::uint64_t lastIdentity_ = 0;
};

}  // namespace mireth::qt
