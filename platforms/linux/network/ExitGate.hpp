// Keeps helper threads out of libraries that are being taken down while the process ends.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <vector>

namespace mireth::platform {

/// Open until the process ends: until main has returned or exit() was called. OpenSSL then gives back what a
/// transfer on another thread still needs, so whoever calls into it, or into libcurl above it, holds a pass
/// meanwhile. Any thread.
class ExitGate {
  public:
    using Pass = std::shared_lock<std::shared_timed_mutex>;

    /// The gate of this process. Called first after the libraries it guards were set up: what is set up last
    /// is taken down first.
    static ExitGate& ofThisProcess();

    /// Empty once the gate is closed. The process ends no sooner than all passes are given back, or a second
    /// has gone by; take none on the thread that may hold one.
    Pass enter();

    /// Keeps for the rest of the process what can no longer be given back.
    void leaveBehind(std::shared_ptr<void> object);

  private:
    void close();

    std::shared_timed_mutex mutex_;
    std::atomic<bool> isClosed_ = false;
    std::vector<std::shared_ptr<void>> leftBehind_;  // guarded by mutex_
};

}  // namespace mireth::platform
