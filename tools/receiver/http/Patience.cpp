// Waits in short slices, so that a stop raised meanwhile is seen.
#include "http/Patience.hpp"

#include <poll.h>

#include <algorithm>
#include <cerrno>

namespace mireth::receiver {
namespace {

// An answer may take as long as its bytes take at this rate.
constexpr std::uint64_t answerRate = std::uint64_t{32} * 1024;

}  // namespace

Patience::Patience(const Limits& limits, const StopSignal& stop, Crowd& crowd)
    : stop_(stop),
      crowd_(crowd),
      began_(Clock::now()),
      requestTime_(limits.requestSeconds),
      idleTime_(limits.idleSeconds),
      deadline_(began_ + std::chrono::seconds(std::min(limits.headSeconds, limits.requestSeconds))),
      pace_{.since = began_} {}

void Patience::answerBegins() {
    if (!answering_) {
        answering_ = true;
        pace_ = {.since = Clock::now()};
        deadline_ = std::max(deadline_, pace_.since + idleTime_);
    }
}

void Patience::moved(std::uint64_t bytes) {
    pace_.bytes += bytes;
    if (answering_) {
        deadline_ += std::chrono::milliseconds(bytes * 1000 / answerRate);
    }
}

void Patience::shorten(std::chrono::seconds time) {
    deadline_ = std::min(deadline_, Clock::now() + time);
}

bool Patience::wait(int fd, short events) {
    const auto silentUntil = Clock::now() + idleTime_;
    const CrowdWait waiting(crowd_, pace_);
    for (;;) {
        gaveWay_ = gaveWay_ || crowd_.givesWay(pace_, Clock::now());
        if (gaveWay_) {
            return false;
        }
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
