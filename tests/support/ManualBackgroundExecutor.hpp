// A background executor that runs on the test's own thread, when the test says so.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <utility>

#include "MirethVex/Platform/BackgroundExecutor.hpp"

namespace mireth::test {

/// Work may be posted from any thread.
class ManualBackgroundExecutor final : public platform::BackgroundExecutor {
  public:
    void post(Work work) override {
        const std::lock_guard lock(mutex_);
        waiting_.push_back(std::move(work));
    }

    /// Runs one piece of work. False when there was none.
    bool runOne() {
        Work work;
        {
            const std::lock_guard lock(mutex_);
            if (waiting_.empty()) {
                return false;
            }
            work = std::move(waiting_.front());
            waiting_.pop_front();
        }
        isRunning_ = true;
        work();
        isRunning_ = false;
        return true;
    }

    /// Runs what has been posted and what that posts. True when there was anything.
    bool runAll() {
        bool ran = false;
        while (runOne()) {
            ran = true;
        }
        return ran;
    }

    /// True inside work that it runs.
    bool isRunning() const { return isRunning_; }

  private:
    bool isRunning_ = false;
    std::mutex mutex_;
    std::deque<Work> waiting_;  // guarded by mutex_
};

}  // namespace mireth::test
