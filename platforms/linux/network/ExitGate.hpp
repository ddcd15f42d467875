// Keeps helper threads out of libraries that are being taken down while the process ends.
#pragma once

#include <atomic>
#include <chrono>
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

    /// `patience`: how long closing waits for passes that are out.
    explicit ExitGate(std::chrono::milliseconds patience = std::chrono::seconds(1)) : patience_(patience) {}

    /// The gate of this process. Called first after the libraries it guards were set up: what is set up last
    /// is taken down first.
    static ExitGate& ofThisProcess();

    /// Empty once the gate is closed. The process ends no sooner than all passes are given back, or the
    /// patience is over; take none on the thread that may hold one.
    Pass enter();

    /// Gives out no pass any more, and waits for those that are out. Not on a thread that holds one.
    void close();

    /// Keeps for the rest of the process what can no longer be given back.
    void leaveBehind(std::shared_ptr<void> object);

  private:
    const std::chrono::milliseconds patience_;
    std::shared_timed_mutex passes_;
    std::atomic<bool> isClosed_ = false;

    // Of its own: whoever leaves something behind does not wait for a pass that never comes back.
    std::mutex leavingMutex_;
    std::vector<std::shared_ptr<void>> leftBehind_;  // guarded by leavingMutex_
};

}  // namespace mireth::platform
