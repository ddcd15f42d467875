#include "platforms/linux/system/ThreadPoolExecutor.hpp"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "platforms/linux/system/HelperThread.hpp"

namespace mireth::platform {

/// Shared with the threads, so that the one that drops the executor can finish by itself.
struct ThreadPoolExecutor::Pool {
    explicit Pool(EscapedErrorHandler handler) : onEscapedError(std::move(handler)) {}

    /// Nothing once the pool stops.
    std::optional<Work> next() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return stopping || !queue.empty(); });
        if (stopping) {
            return std::nullopt;
        }
        std::optional<Work> work = std::move(queue.front());
        queue.pop_front();
        return work;
    }

    void runAll() {
        while (auto work = next()) {
            if (*work) {
                runGuarded("background work", *work, onEscapedError);
            }
        }
    }

    void stop() {
        std::deque<Work> dropped;
        {
            const std::lock_guard lock(mutex);
            stopping = true;
            dropped.swap(queue);
        }
        changed.notify_all();
    }

    const EscapedErrorHandler onEscapedError;
    std::vector<std::thread> threads;  // touched by the constructor and the destructor only

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Work> queue;  // guarded by mutex
    bool stopping = false;   // guarded by mutex
};

ThreadPoolExecutor::ThreadPoolExecutor(std::size_t threads, EscapedErrorHandler onEscapedError)
    : pool_(std::make_shared<Pool>(std::move(onEscapedError))) {
    try {
        for (std::size_t i = 0; i < std::max<std::size_t>(threads, 1); ++i) {
            pool_->threads.push_back(startHelperThread("mireth-work", [pool = pool_] { pool->runAll(); }));
        }
    } catch (...) {
        joinAll();
        throw;
    }
}

ThreadPoolExecutor::~ThreadPoolExecutor() {
    joinAll();
}

void ThreadPoolExecutor::joinAll() {
    pool_->stop();
    for (auto& thread : pool_->threads) {
        if (thread.get_id() == std::this_thread::get_id()) {
            thread.detach();
        } else {
            thread.join();
        }
    }
}

void ThreadPoolExecutor::post(Work work) {
    {
        const std::lock_guard lock(pool_->mutex);
        if (pool_->stopping) {
            return;
        }
        pool_->queue.push_back(std::move(work));
    }
    pool_->changed.notify_one();
}

}  // namespace mireth::platform
