// How long one connection may keep its thread: until the next of its deadlines, or until it is shed because
// its client is slow while others wait. Used by the connection's transport for every wait.
#pragma once

#include <chrono>
#include <cstdint>

#include "http/RequestDeadlines.hpp"
#include "http/SlowClientShedder.hpp"
#include "http/StopSignal.hpp"
#include "settings/Limits.hpp"

namespace mireth::receiver {

/// One connection's; one thread.
class ConnectionTimer {
  public:
    /// Starts counting. `stop` and `shedder` must outlive it.
    ConnectionTimer(const Limits& limits, const StopSignal& stop, SlowClientShedder& shedder);

    // What RequestDeadlines is told.
    void headCompleted() { deadlines_.headCompleted(); }
    void answerBegins();
    void lingerBegins() { deadlines_.lingerBegins(Clock::now()); }
    /// So many bytes came in or went out.
    void moved(std::uint64_t bytes);

    /// Waits until `events` (as for poll) are there on `fd`. False when the time is over before, the client
    /// is shed or the wait fails.
    bool wait(int fd, short events);
    bool wasShed() const { return wasShed_; }

  private:
    using Clock = RequestDeadlines::Clock;

    SlowClientShedder& shedder_;
    SlowClientShedder::Throughput throughput_{.since = Clock::now()};  ///< of the request, then of the answer
    RequestDeadlines deadlines_;
    bool wasShed_ = false;
};

}  // namespace mireth::receiver
