// A background executor that runs on the test's own thread, when the test says so.
#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <utility>

#include "Base/GuardedRun.hpp"
#include "Base/ScopedFlag.hpp"
#include "MirethVex/Platform/BackgroundExecutor.hpp"

namespace mireth::test {

/// Work may be posted from any thread.
class ManualBackgroundExecutor final : public platform::BackgroundExecutor {
  public:
    /// Without a handler, what work throws comes out of the call that runs it: nothing in a test should throw
    /// in the background, and so the test fails.
    explicit ManualBackgroundExecutor(EscapedErrorHandler onEscapedError = {})
        : onEscapedError_(std::move(onEscapedError)) {}

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
        run(std::move(work));
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
    void run(Work work) {
        if (!work) {
            return;
        }
        const ScopedFlag running(isRunning_);
        if (onEscapedError_) {
            runGuarded("work", work, onEscapedError_);
        } else {
            work();
        }
    }

    const EscapedErrorHandler onEscapedError_;
    bool isRunning_ = false;
    std::mutex mutex_;
    std::deque<Work> waiting_;  // guarded by mutex_
};

}  // namespace mireth::test
