// Knows the connections that wait for a thread and those that hold one while their clients are slow, and says
// which of these give theirs up. Shared by the server's threads.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <set>

namespace mireth::receiver {

/// Any thread may call.
class Crowd {
  public:
    using Clock = std::chrono::steady_clock;

    /// How fast a connection's client moves.
    struct Pace {
        Clock::time_point since;
        std::uint64_t bytes = 0;  ///< in or out since then
    };

    /// One more connection waits for a thread.
    void joined(Clock::time_point now);
    /// A thread is about to be free for one of those who wait, if any do.
    void serveOne();

    /// A connection with a thread waits for its client from here on; `pace` stays where it is and does not
    /// change until it no longer does.
    void waits(const Pace& pace);
    void waitsNoMore(const Pace& pace);
    /// True when the connection of `pace`, which waits for its client, has to make room for one that waits
    /// for a thread: that one is thereby served.
    bool givesWay(const Pace& pace, Clock::time_point now);

  private:
    std::size_t slowerThan(const Pace& pace, Clock::time_point now) const;

    std::mutex mutex_;
    // Guarded by mutex_.
    std::deque<Clock::time_point> waiting_;  ///< since when each waits for a thread, the longest first
    std::set<const Pace*> paces_;
};

/// Says as long as it lives that a connection waits for its client.
class CrowdWait {
  public:
    CrowdWait(Crowd& crowd, const Crowd::Pace& pace) : crowd_(crowd), pace_(pace) { crowd_.waits(pace_); }
    CrowdWait(const CrowdWait&) = delete;
    CrowdWait& operator=(const CrowdWait&) = delete;
    ~CrowdWait() { crowd_.waitsNoMore(pace_); }

  private:
    Crowd& crowd_;
    const Crowd::Pace& pace_;
};

}  // namespace mireth::receiver
