// A pool that grows on demand up to its bound and has a queue as long as that beyond it.
#include "http/ConnectionThreads.hpp"

#include <system_error>
#include <utility>

namespace mireth::receiver {

bool ConnectionThreads::enqueue(std::function<void()> job) {
    const std::lock_guard lock(mutex_);
    if (idle_ <= jobs_.size() && !startThread()) {
        if (jobs_.size() - idle_ >= most_) {
            return false;
        }
        shedder_.enqueued(SlowClientShedder::Clock::now());
    }
    jobs_.push_back(std::move(job));
    changed_.notify_one();
    return true;
}

// It comes for a job that is about to be queued.
bool ConnectionThreads::startThread() {
    if (threads_.size() >= most_) {
        return false;
    }
    try {
        threads_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
        return false;  // the system has no thread left: as good as all being busy
    }
    ++idle_;
    return true;
}

void ConnectionThreads::work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return ending_ || !jobs_.empty(); });
        if (jobs_.empty()) {
            return;
        }
        auto job = std::move(jobs_.front());
        jobs_.pop_front();
        --idle_;
        lock.unlock();
        job();
        job = nullptr;
        lock.lock();
        ++idle_;
    }
}

void ConnectionThreads::shutdown() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_all();
    for (auto& thread : threads_) {
        thread.join();
    }
    threads_.clear();
}

}  // namespace mireth::receiver
