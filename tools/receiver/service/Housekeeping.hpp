// A thread that does some work at once and then again and again until it is told to end. Used by the serve
// command for the rules of retention.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace mireth::receiver {

class Housekeeping {
  public:
    /// `work` runs on the object's own thread.
    Housekeeping(std::function<void()> work, std::chrono::milliseconds interval);
    Housekeeping(const Housekeeping&) = delete;
    Housekeeping& operator=(const Housekeeping&) = delete;
    /// Returns once the work that is under way is done.
    ~Housekeeping();

  private:
    void run(std::chrono::milliseconds interval);

    const std::function<void()> work_;
    std::mutex mutex_;
    std::condition_variable ended_;
    // Guarded by mutex_.
    bool ending_ = false;
    std::thread thread_;
};

}  // namespace mireth::receiver
