// Both clocks of a scripted device, over the queue's time.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>

#include "MirethVex/Headless/VirtualMainQueue.hpp"
#include "MirethVex/Platform/Clock.hpp"

namespace mireth::headless {

/// Any thread.
class HeadlessClock final : public platform::Clock {
  public:
    /// What the clocks read when the queue's time begins.
    HeadlessClock(std::shared_ptr<const VirtualMainQueue> queue, std::int64_t epochMillis,
                  double uptimeSeconds);

    Date now() const override;
    double uptimeSeconds() const override;

    /// Sets the wall clock forward, or back when `span` is negative. The uptime clock does not notice.
    void jump(std::chrono::nanoseconds span);

  private:
    const std::shared_ptr<const VirtualMainQueue> queue_;
    const double uptimeAtBeginning_;
    std::atomic<std::int64_t> wallAtBeginning_;  // nanoseconds since the epoch
};

}  // namespace mireth::headless
