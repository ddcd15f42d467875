// Waits in short slices, so that a stop raised meanwhile is seen.
#include "http/Patience.hpp"

#include <poll.h>

#include <algorithm>
#include <cerrno>

namespace mireth::receiver {
namespace {

// A client that is slower for longer gives its thread up while others wait for one.
constexpr std::chrono::seconds slowTime{2};
constexpr double slowRate = 1024;  // bytes a second
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
      movingSince_(began_) {}

void Patience::answerBegins() {
    if (!answering_) {
        answering_ = true;
        movingSince_ = Clock::now();
        moved_ = 0;
        deadline_ = std::max(deadline_, movingSince_ + idleTime_);
    }
}

void Patience::moved(std::uint64_t bytes) {
    moved_ += bytes;
    if (answering_) {
        deadline_ += std::chrono::milliseconds(bytes * 1000 / answerRate);
    }
}

bool Patience::isSlow(Clock::time_point now) const {
    const std::chrono::duration<double> time = now - movingSince_;
    return time >= slowTime && static_cast<double>(moved_) < slowRate * time.count();
}

void Patience::shorten(std::chrono::seconds time) {
    deadline_ = std::min(deadline_, Clock::now() + time);
}

bool Patience::wait(int fd, short events) {
    const auto silentUntil = Clock::now() + idleTime_;
    for (;;) {
        gaveWay_ = gaveWay_ || (isSlow(Clock::now()) && crowd_.serveOne());
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
