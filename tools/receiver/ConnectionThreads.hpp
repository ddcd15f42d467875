// The threads that connections run on: one each, made when needed and reused, never more than a bound. Used
// by the HTTP server. Included by .cpp files only, as it names the HTTP library's type.
#pragma once

#include <httplib.h>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace mireth::receiver {

class ConnectionThreads final : public httplib::TaskQueue {
  public:
    explicit ConnectionThreads(std::size_t most) : most_(most) {}

    /// Runs `job` on a thread of its own; on the calling thread, at once, when all are busy, so that the job
    /// can tell and turn the connection away.
    void enqueue(std::function<void()> job) override;
    /// Runs what was enqueued and returns when all of it has ended.
    void shutdown() override;

  private:
    bool handOver(std::function<void()>& job);
    void work();

    const std::size_t most_;
    std::vector<std::thread> threads_;  // touched by the thread that accepts only

    std::mutex mutex_;
    std::condition_variable changed_;
    // Guarded by mutex_.
    std::deque<std::function<void()>> jobs_;
    std::size_t idle_ = 0;
    bool ending_ = false;
};

}  // namespace mireth::receiver
