// Load shedding: knows the connections that wait for a thread and those that hold one while their clients are
// slow, and says which of these are dropped. Shared by the server's threads.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>

namespace mireth::receiver {

/// Any thread may call.
class SlowClientShedder {
  public:
    using Clock = std::chrono::steady_clock;

    /// What a client sends or takes.
    struct Throughput {
        Clock::time_point since;
        std::uint64_t bytes = 0;  ///< in or out since then
    };

    class ClientWait;

    /// One more connection waits for a thread.
    void enqueued(Clock::time_point now);
    /// A thread is about to be free for one of those who wait, if any do.
    void dequeued();

  private:
    using Id = std::uint64_t;

    Id waitBegins(const Throughput& throughput);
    void waitEnds(Id id);
    bool isShed(Id id, Clock::time_point now);
    std::size_t slowerThan(double rate, Clock::time_point now) const;

    std::mutex mutex_;
    // Guarded by mutex_.
    std::deque<Clock::time_point> queue_;  ///< since when each waits for a thread, the longest first
    std::map<Id, Throughput> clients_;     ///< whose connections hold a thread and wait for them
    Id nextId_ = 0;
};

/// As long as it lives a connection that holds a thread waits for its client. One thread.
class SlowClientShedder::ClientWait {
  public:
    /// `throughput` is that of the client so far; the shedder outlives the wait.
    ClientWait(SlowClientShedder& shedder, const Throughput& throughput)
        : shedder_(shedder), id_(shedder.waitBegins(throughput)) {}
    ClientWait(const ClientWait&) = delete;
    ClientWait& operator=(const ClientWait&) = delete;
    ~ClientWait() { shedder_.waitEnds(id_); }

    /// True when the connection is to be dropped in favour of one that waits for a thread, which thereby
    /// waits no longer.
    bool isShed(Clock::time_point now) { return shedder_.isShed(id_, now); }

  private:
    SlowClientShedder& shedder_;
    const Id id_;
};

}  // namespace mireth::receiver
