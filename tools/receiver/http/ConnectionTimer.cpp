// Waits in short slices, so that a stop raised meanwhile is seen.
#include "http/ConnectionTimer.hpp"

#include <poll.h>

#include <algorithm>
#include <cerrno>

namespace mireth::receiver {

ConnectionTimer::ConnectionTimer(const Limits& limits, const StopSignal& stop, SlowClientShedder& shedder)
    : shedder_(shedder), deadlines_(limits, stop, throughput_.since) {}

void ConnectionTimer::answerBegins() {
    const auto now = Clock::now();
    if (deadlines_.answerBegins(now)) {
        throughput_ = {.since = now};
    }
}

void ConnectionTimer::moved(std::uint64_t bytes) {
    throughput_.bytes += bytes;
    deadlines_.moved(bytes);
}

bool ConnectionTimer::wait(int fd, short events) {
    deadlines_.waitBegins(Clock::now());
    SlowClientShedder::ClientWait waiting(shedder_, throughput_);
    for (;;) {
        const auto now = Clock::now();
        wasShed_ = wasShed_ || waiting.isShed(now);
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadlines_.next() - now);
        if (wasShed_ || left.count() <= 0) {
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
