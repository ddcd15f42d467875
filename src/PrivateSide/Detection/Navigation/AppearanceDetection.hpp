// Switches the automatic detection of appearing and disappearing screens.
#pragma once

#include <optional>

#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Main thread.
class AppearanceDetection {
  public:
    explicit AppearanceDetection(MirethLog& log) : log_(log) {}

    void enableSwizzle() { enableAutodetection(); }
    void enableAutodetection();
    void disableAutodetection();

    /// Absent until detection was first switched on.
    std::optional<bool> shouldReportChange() const noexcept { return shouldReportChange_; }

  private:
    MirethLog& log_;
    std::optional<bool> shouldReportChange_;
};

}  // namespace mireth
