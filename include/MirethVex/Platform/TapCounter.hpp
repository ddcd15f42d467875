// Counts taps in a row, for toolkits that do not count them themselves.
#pragma once

#include <optional>

#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Base/Geometry.hpp"
#include "MirethVex/Platform/Touch.hpp"

namespace mireth::platform {

/// A touch that begins less than `interval` after the last one ended, and within `distance` of where that
/// was, counts one more than that one; any other counts 1, also at a place or time that is not a number. One
/// counter serves one window. One thread at a time.
class MIRETH_EXPORT TapCounter {
  public:
    /// `interval` in seconds; `distance` in points, itself included.
    TapCounter(double interval, double distance) : interval_(interval), distance_(distance) {}

    /// The tap count of a touch that begins at `location` (in the window, in points) at `timestamp` (in
    /// seconds on the uptime clock). It is the touch's own until its end.
    int countOf(Point location, double timestamp) const;

    /// A touch has ended, with the tap count that it began with. Not for a cancelled one, which was no tap.
    void touchEnded(const Touch& touch);

  private:
    struct Ended {
        Point location;
        double timestamp = 0;
        int tapCount = 1;
    };

    double interval_;
    double distance_;
    std::optional<Ended> last_;
};

}  // namespace mireth::platform
