// Until when one request may go on: a deadline each for its head, the whole of it, a silence, its answer,
// what follows the answer and, once the server is stopping, for everything. Kept by ConnectionTimer.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "http/StopSignal.hpp"
#include "settings/Limits.hpp"

namespace mireth::receiver {

/// One thread. It reads no clock: every operation that needs the time is told it.
class RequestDeadlines {
  public:
    using Clock = StopSignal::Clock;

    /// The connection begins now. `stop` outlives the deadlines.
    RequestDeadlines(const Limits& limits, const StopSignal& stop, Clock::time_point now);

    /// The head is complete: from here the deadline of the whole request counts.
    void headCompleted() { head_ = never; }
    /// A wait for the client begins.
    void waitBegins(Clock::time_point now) { idle_ = now + idleTime_; }
    /// The answer is to be written: however late it is, there is a little time for that. Only the first call
    /// counts; true for it.
    bool answerBegins(Clock::time_point now);
    /// So many bytes came in or went out: every piece of an answer gives it more time.
    void moved(std::uint64_t bytes);
    /// The answer is out, and the client has a moment to take it.
    void lingerBegins(Clock::time_point now);

    /// The first of them all to come.
    Clock::time_point next() const;

  private:
    static constexpr Clock::time_point never = Clock::time_point::max();

    const StopSignal& stop_;
    const std::chrono::seconds idleTime_;
    const Clock::time_point request_;
    Clock::time_point head_;
    Clock::time_point idle_ = never;
    std::optional<Clock::time_point> answer_;  ///< in place of the request's, once the answer has begun
    Clock::time_point linger_ = never;
};

}  // namespace mireth::receiver
