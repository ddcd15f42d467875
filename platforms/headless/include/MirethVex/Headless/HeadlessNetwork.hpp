// The network of a script, and the monitors that watch it.
#pragma once

#include <memory>

#include "MirethVex/Base/Published.hpp"
#include "MirethVex/Platform/BackgroundExecutor.hpp"
#include "MirethVex/Platform/PathMonitor.hpp"

namespace mireth::headless {

/// Any thread.
class HeadlessNetwork {
  public:
    /// Monitors call their handlers on `background`.
    explicit HeadlessNetwork(std::shared_ptr<platform::BackgroundExecutor> background,
                             platform::NetworkPath path = {.satisfied = true, .usesWifi = true});

    platform::NetworkPath path() const { return path_.value(); }
    /// Every monitor that has started hears of it; setting the same path again is no change.
    void setPath(const platform::NetworkPath& path);

    /// The monitor may outlive the network; it then reports nothing new.
    std::unique_ptr<platform::PathMonitor> makeMonitor() const;

  private:
    const std::shared_ptr<platform::BackgroundExecutor> background_;
    Published<platform::NetworkPath> path_;
};

}  // namespace mireth::headless
