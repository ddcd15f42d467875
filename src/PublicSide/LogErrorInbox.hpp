// Brings the errors that the host logs on its threads to the main thread.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "MirethVex/Platform/MainQueue.hpp"
#include "PrivateSide/Detection/Signals/SignalPublishers/LogErrorData.hpp"

namespace mireth {

/// Costs a logging thread little: it takes a lock for as long as one entry is moved, and troubles the main
/// queue only when nothing waits yet. Always owned by std::shared_ptr; what waits when the last one goes, or
/// when the main queue drops what it was given, is dropped.
class LogErrorInbox : public std::enable_shared_from_this<LogErrorInbox> {
  public:
    using Handler = std::function<void(const LogErrorData&)>;

    /// `handler` is called on main, once for each error, with no lock held. It may add errors itself.
    LogErrorInbox(std::shared_ptr<platform::MainQueue> mainQueue, Handler handler);

    /// Takes an error. On main it is handled before this returns, after all that wait; elsewhere in a later
    /// turn of the main queue. What one thread adds keeps its order. Any thread.
    void add(LogErrorData error);

  private:
    class Turn;

    /// Handles what waits now. What is added meanwhile gets a turn of its own, so that threads which log
    /// without end cannot keep main here.
    void drain();
    void clear() noexcept;

    const std::shared_ptr<platform::MainQueue> mainQueue_;
    const Handler handler_;

    // Main only
    std::deque<LogErrorData> beingHandled_;

    std::mutex mutex_;
    std::deque<LogErrorData> waiting_;  // guarded by mutex_
};

}  // namespace mireth
