// Clock readings computed from whole nanoseconds, so that whole milliseconds stay whole.
#include "MirethVex/Headless/HeadlessClock.hpp"

#include <utility>

namespace mireth::headless {

HeadlessClock::HeadlessClock(std::shared_ptr<const VirtualMainQueue> queue, std::int64_t epochMillis,
                             double uptimeSeconds)
    : queue_(std::move(queue)),
      uptimeAtBeginning_(uptimeSeconds),
      wallAtBeginning_(epochMillis * 1'000'000) {}

Date HeadlessClock::now() const {
    return Date::fromNanoseconds(wallAtBeginning_.load() + queue_->now().count());
}

double HeadlessClock::uptimeSeconds() const {
    return uptimeAtBeginning_ + static_cast<double>(queue_->now().count()) / 1e9;
}

void HeadlessClock::jump(std::chrono::nanoseconds span) {
    wallAtBeginning_ += span.count();
}

}  // namespace mireth::headless
