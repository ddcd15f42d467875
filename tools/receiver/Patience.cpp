// Waits in short slices, so that a stop raised meanwhile is seen.
#include "Patience.hpp"

#include <poll.h>

#include <algorithm>
#include <cerrno>

namespace mireth::receiver {

Patience::Patience(const Limits& limits, const StopSignal& stop)
    : stop_(stop),
      began_(Clock::now()),
      requestTime_(limits.requestSeconds),
      idleTime_(limits.idleSeconds),
      deadline_(began_ + std::chrono::seconds(std::min(limits.headSeconds, limits.requestSeconds))) {}

void Patience::answerBegins() {
    if (!answering_) {
        answering_ = true;
        deadline_ = std::max(deadline_, Clock::now() + idleTime_);
    }
}

void Patience::shorten(std::chrono::seconds time) {
    deadline_ = std::min(deadline_, Clock::now() + time);
}

bool Patience::wait(int fd, short events) const {
    const auto silentUntil = Clock::now() + idleTime_;
    for (;;) {
        const auto until = std::min({silentUntil, deadline_, stop_.deadline()});
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now());
        if (left.count() <= 0) {
            return false;
        }
        pollfd entry{.fd = fd, .events = events, .revents = 0};
        const int slice = static_cast<int>(std::min<std::chrono::milliseconds::rep>(left.count(), 200));
        const int ready = ::poll(&entry, 1, slice);
        if (ready > 0) {
            return true;
        }
        if (ready < 0 && errno != EINTR) {
            return false;
        }
    }
}

}  // namespace mireth::receiver
