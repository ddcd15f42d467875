// The threads that connections run on: one each, made when needed and reused, never more than a bound; beyond
// it as many connections wait their turn. Used by the HTTP server.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "http/SlowClientShedder.hpp"

namespace mireth::receiver {

class ConnectionThreads {
  public:
    /// `shedder` must outlive it; it is told of every job that waits for a thread.
    ConnectionThreads(std::size_t most, SlowClientShedder& shedder) : most_(most), shedder_(shedder) {}

    /// Runs `job` on a thread of its own, when all are busy as soon as one is free. False when too many wait
    /// already. One thread may call, also for `shutdown`.
    bool enqueue(std::function<void()> job);
    /// Runs what was enqueued and returns when all of it has ended. Must be called before this object goes.
    void shutdown();

  private:
    void work();
    bool startThread();

    const std::size_t most_;
    SlowClientShedder& shedder_;
    std::vector<std::thread> threads_;  // touched by the thread that accepts only

    std::mutex mutex_;
    std::condition_variable changed_;
    // Guarded by mutex_.
    std::deque<std::function<void()>> jobs_;
    std::size_t idle_ = 0;
    bool ending_ = false;
};

}  // namespace mireth::receiver
