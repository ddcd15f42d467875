// The slowest are shed first. Those that are as good as stalled go at once; the others only when somebody has
// waited for a while, as a thread becomes free by itself soon where all clients are honest.
#include "http/SlowClientShedder.hpp"

#include <algorithm>

namespace mireth::receiver {
namespace {

// No rate is taken over less.
constexpr std::chrono::seconds measuringTime{2};
// So long somebody waits for a thread before clients that do move are shed.
constexpr std::chrono::seconds toleratedWait{2};
constexpr double stalledRate = 1024;  // bytes a second

bool isMeasured(const SlowClientShedder::Throughput& client, SlowClientShedder::Clock::time_point now) {
    return now - client.since >= measuringTime;
}

double rateOf(const SlowClientShedder::Throughput& client, SlowClientShedder::Clock::time_point now) {
    return static_cast<double>(client.bytes) / std::chrono::duration<double>(now - client.since).count();
}

}  // namespace

void SlowClientShedder::enqueued(Clock::time_point now) {
    const std::lock_guard lock(mutex_);
    queue_.push_back(now);
}

void SlowClientShedder::dequeued() {
    const std::lock_guard lock(mutex_);
    if (!queue_.empty()) {
        queue_.pop_front();
    }
}

SlowClientShedder::Id SlowClientShedder::waitBegins(const Throughput& throughput) {
    const std::lock_guard lock(mutex_);
    clients_.emplace(nextId_, throughput);
    return nextId_++;
}

void SlowClientShedder::waitEnds(Id id) {
    const std::lock_guard lock(mutex_);
    clients_.erase(id);
}

std::size_t SlowClientShedder::slowerThan(double rate, Clock::time_point now) const {
    return static_cast<std::size_t>(std::ranges::count_if(clients_, [&](const auto& entry) {
        return isMeasured(entry.second, now) && rateOf(entry.second, now) < rate;
    }));
}

bool SlowClientShedder::isShed(Id id, Clock::time_point now) {
    const std::lock_guard lock(mutex_);
    const auto& client = clients_.at(id);
    if (queue_.empty() || !isMeasured(client, now)) {
        return false;
    }
    const auto rate = rateOf(client, now);
    if (rate >= stalledRate) {
        const auto pressing = std::ranges::upper_bound(queue_, now - toleratedWait) - queue_.begin();
        if (slowerThan(rate, now) >= static_cast<std::size_t>(pressing)) {
            return false;
        }
    }
    queue_.pop_front();
    return true;
}

}  // namespace mireth::receiver
