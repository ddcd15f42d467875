// Tells over which kind of network the device can reach the internet, and when that changes.
#pragma once

#include <functional>

namespace mireth::platform {

struct NetworkPath {
    /// True when there is a route over which the internet can be reached.
    bool satisfied = false;
    /// The kinds of interface that the path uses. Several may be in use at once.
    bool usesWifi = false;
    bool usesCellular = false;
    bool usesWired = false;
    bool operator==(const NetworkPath&) const = default;
};

/// One watcher of the network path. `start` and destruction come from any thread, one at a time.
class PathMonitor {
  public:
    /// Called with the current path soon after `start`, and again at every change of it, on a thread of
    /// the monitor's own.
    using UpdateHandler = std::function<void(const NetworkPath&)>;

    /// Cancels; no handler runs once the destructor has returned. Not called from the handler.
    virtual ~PathMonitor() = default;
    /// Starts watching; called once at most. A system that cannot be watched reports one unsatisfied path.
    virtual void start(UpdateHandler handler) = 0;
    /// No handler begins after this returns, and a running one has finished, unless called from it.
    virtual void cancel() = 0;
};

}  // namespace mireth::platform
