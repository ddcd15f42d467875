// The repeating timers of AsioMainQueue.
#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <memory>

#include "Base/GuardedRun.hpp"
#include "MirethVex/Platform/MainQueue.hpp"
#include "Platform/PhaseClock.hpp"

namespace mireth::platform {

/// One timer that keeps its phase.
///
/// It is owned by the handler that waits for the next tick, hence by the loop; the loop's end is its end.
/// The token holds it weakly and may outlive both. Main thread only.
class RepeatingTimer : public std::enable_shared_from_this<RepeatingTimer> {
  public:
    RepeatingTimer(boost::asio::io_context& context, Seconds interval, Work tick,
                   EscapedErrorHandler onEscapedError);

    void start();
    void invalidate();

  private:
    void waitForNextTick();
    void fire();

    boost::asio::steady_timer timer_;
    PhaseClock phase_;
    const EscapedErrorHandler onEscapedError_;
    Work tick_;
    bool active_ = true;
    bool ticking_ = false;
};

/// The token handed to the caller.
class RepeatingTimerToken final : public Timer {
  public:
    explicit RepeatingTimerToken(std::weak_ptr<RepeatingTimer> timer) : timer_(std::move(timer)) {}
    RepeatingTimerToken(const RepeatingTimerToken&) = delete;
    RepeatingTimerToken& operator=(const RepeatingTimerToken&) = delete;
    ~RepeatingTimerToken() override { cancel(); }
    void invalidate() override { cancel(); }

  private:
    void cancel();
    std::weak_ptr<RepeatingTimer> timer_;
};

}  // namespace mireth::platform
