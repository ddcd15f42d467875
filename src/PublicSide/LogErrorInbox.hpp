// Brings the errors that the host logs on its threads to the main thread.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "MirethVex/Platform/MainQueue.hpp"
#include "PrivateSide/Detection/Signals/SignalPublishers/LogErrorData.hpp"
#include "PrivateSide/Logger/LogOutletScope.hpp"

namespace mireth {

/// Costs a logging thread little. It holds a lock while one entry is moved; and waking the main thread, which
/// costs a hundred times as much, is left to the first error of many: main looks again by itself as long as
/// it finds something. Always owned by std::shared_ptr; what waits when the last one goes, or when the main
/// queue drops what it was given, is dropped.
class LogErrorInbox : public std::enable_shared_from_this<LogErrorInbox> {
  public:
    using Handler = std::function<void(const LogErrorData&)>;

    /// Between two looks.
    static constexpr platform::Seconds interval{0.005};

    /// `handler` is called on main, once for each error, with no lock held. It may add errors itself.
    LogErrorInbox(std::shared_ptr<platform::MainQueue> mainQueue, Handler handler);

    /// Takes an error. On main it is handled before this returns, after all that wait; elsewhere in a later
    /// turn of the main queue, an interval later at the most. What one thread adds keeps its order. An error
    /// that is added inside a log listener or the system log is handled as inside one: were it refused with a
    /// line, they would hear of it and might add the next. Any thread.
    void add(LogErrorData error);

    /// Handles what waits now, and not what is added meanwhile: threads that log without end cannot keep main
    /// here. Main thread.
    void drain();

  private:
    class Turn;
    struct Entry {
        LogErrorData error;
        /// That it was logged in.
        LogOutlet outlet;
    };

    void takeTurn();
    void handle(const Entry& entry) const;
    void clear() noexcept;

    const std::shared_ptr<platform::MainQueue> mainQueue_;
    const Handler handler_;

    // Main only
    std::deque<Entry> beingHandled_;

    std::mutex mutex_;
    std::deque<Entry> waiting_;  // guarded by mutex_
    bool isTurnDue_ = false;     // guarded by mutex_; the main queue has been given a turn
};

}  // namespace mireth
