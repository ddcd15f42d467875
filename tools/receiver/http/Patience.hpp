// How long one connection may keep its thread: bounds on the head, on silence, on the whole request, on
// slowness while others wait and, once the server is stopping, on everything. Used by the connection's
// transport for every wait.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

#include "http/Crowd.hpp"
#include "settings/Limits.hpp"

namespace mireth::receiver {

/// The server's wish to end, seen by all its connections.
class StopSignal {
  public:
    using Clock = std::chrono::steady_clock;

    /// Connections under way have until `grace` from now.
    void raise(std::chrono::seconds grace) { deadline_ = (Clock::now() + grace).time_since_epoch().count(); }
    Clock::time_point deadline() const { return Clock::time_point(Clock::duration(deadline_.load())); }

  private:
    std::atomic<Clock::rep> deadline_{Clock::time_point::max().time_since_epoch().count()};
};

/// One connection's; one thread.
class Patience {
  public:
    /// Starts counting. All three must outlive it.
    Patience(const Limits& limits, const StopSignal& stop, Crowd& crowd);

    /// The head is complete: from here the bound of the whole request holds.
    void headCompleted() { deadline_ = began_ + requestTime_; }
    /// The answer is to be written: however late it is, there is a little time for that, once, and more with
    /// every piece of it that goes out.
    void answerBegins();
    /// So many bytes came in or went out.
    void moved(std::uint64_t bytes);
    /// From here on only `time` is left.
    void shorten(std::chrono::seconds time);

    /// Waits until `events` (as for poll) are there on `fd`. False when patience ends before or the wait
    /// fails.
    bool wait(int fd, short events);
    /// Patience ended because others waited for the thread and this client was slow.
    bool gaveWay() const { return gaveWay_; }

  private:
    using Clock = StopSignal::Clock;

    const StopSignal& stop_;
    Crowd& crowd_;
    const Clock::time_point began_;
    const std::chrono::seconds requestTime_;
    const std::chrono::seconds idleTime_;
    Clock::time_point deadline_;
    bool answering_ = false;
    bool gaveWay_ = false;
    Crowd::Pace pace_;
};

}  // namespace mireth::receiver
