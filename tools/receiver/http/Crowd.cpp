// The slowest make room first. Those that hardly move do so at once; the others only when somebody has waited
// for a while, as a thread becomes free by itself soon where all clients are honest.
#include "http/Crowd.hpp"

#include <algorithm>

namespace mireth::receiver {
namespace {

// Nobody is judged by less.
constexpr std::chrono::seconds trial{2};
// So long somebody waits for a thread before clients that do move make room.
constexpr std::chrono::seconds politeness{2};
constexpr double hardlyMoving = 1024;  // bytes a second

bool isJudged(const Crowd::Pace& pace, Crowd::Clock::time_point now) {
    return now - pace.since >= trial;
}

double rateOf(const Crowd::Pace& pace, Crowd::Clock::time_point now) {
    return static_cast<double>(pace.bytes) / std::chrono::duration<double>(now - pace.since).count();
}

}  // namespace

void Crowd::joined(Clock::time_point now) {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(now);
}

void Crowd::serveOne() {
    const std::lock_guard lock(mutex_);
    if (!waiting_.empty()) {
        waiting_.pop_front();
    }
}

void Crowd::waits(const Pace& pace) {
    const std::lock_guard lock(mutex_);
    paces_.insert(&pace);
}

void Crowd::waitsNoMore(const Pace& pace) {
    const std::lock_guard lock(mutex_);
    paces_.erase(&pace);
}

std::size_t Crowd::slowerThan(const Pace& pace, Clock::time_point now) const {
    const auto rate = rateOf(pace, now);
    return static_cast<std::size_t>(std::ranges::count_if(
        paces_, [&](const Pace* other) { return isJudged(*other, now) && rateOf(*other, now) < rate; }));
}

bool Crowd::givesWay(const Pace& pace, Clock::time_point now) {
    const std::lock_guard lock(mutex_);
    if (waiting_.empty() || !isJudged(pace, now)) {
        return false;
    }
    if (rateOf(pace, now) >= hardlyMoving) {
        const auto pressing = std::ranges::upper_bound(waiting_, now - politeness) - waiting_.begin();
        if (slowerThan(pace, now) >= static_cast<std::size_t>(pressing)) {
            return false;
        }
    }
    waiting_.pop_front();
    return true;
}

}  // namespace mireth::receiver
