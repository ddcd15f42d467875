// The server's wish to end, seen by all its connections.
#pragma once

#include <atomic>
#include <chrono>

namespace mireth::receiver {

/// Any thread may call.
class StopSignal {
  public:
    using Clock = std::chrono::steady_clock;

    /// Connections under way have until `grace` from now.
    void raise(std::chrono::seconds grace) { deadline_ = (Clock::now() + grace).time_since_epoch().count(); }
    /// The end of time as long as nobody has raised it.
    Clock::time_point deadline() const { return Clock::time_point(Clock::duration(deadline_.load())); }

  private:
    std::atomic<Clock::rep> deadline_{Clock::time_point::max().time_since_epoch().count()};
};

}  // namespace mireth::receiver
