// A timed wait between two turns.
#include "service/Housekeeping.hpp"

#include <utility>

namespace mireth::receiver {

Housekeeping::Housekeeping(std::function<void()> work, std::chrono::milliseconds interval)
    : work_(std::move(work)), thread_([this, interval] { run(interval); }) {}

Housekeeping::~Housekeeping() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    ended_.notify_all();
    thread_.join();
}

void Housekeeping::run(std::chrono::milliseconds interval) {
    std::unique_lock lock(mutex_);
    while (!ending_) {
        lock.unlock();
        work_();
        lock.lock();
        ended_.wait_for(lock, interval, [this] { return ending_; });
    }
}

}  // namespace mireth::receiver
