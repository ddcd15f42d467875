// The main queue of a host without a toolkit: a loop that the host runs on its main thread.
#pragma once

#include <memory>

#include "Base/GuardedRun.hpp"
#include "MirethVex/Platform/MainQueue.hpp"

namespace mireth::platform {

/// The main thread is the one that calls `run`; before the first `run`, the process's first thread, whichever
/// built the queue. Delays and timers follow the steady clock, which stands still while the machine sleeps.
///
/// May be destroyed by work that it runs: the loop then ends after that work.
class AsioMainQueue final : public MainQueue {
  public:
    /// `onEscapedError` is told on the main thread what work has thrown; standard error when left out.
    explicit AsioMainQueue(EscapedErrorHandler onEscapedError = {});
    AsioMainQueue(const AsioMainQueue&) = delete;
    AsioMainQueue& operator=(const AsioMainQueue&) = delete;
    ~AsioMainQueue() override;

    /// Runs work on the calling thread until `stop`. One thread at a time; may be called again, and then
    /// goes on with what is queued.
    void run();

    /// Makes `run` return after the work it is in; a `run` that has not begun returns at once. Any thread.
    void stop();

    void post(Work work) override;
    void postAfter(Seconds delay, Work work) override;
    /// An interval below one millisecond, or one that is no number, counts as one millisecond.
    std::unique_ptr<Timer> scheduleRepeating(Seconds interval, Work tick) override;
    bool isCurrent() const noexcept override;

  private:
    struct Loop;
    std::shared_ptr<Loop> loop_;
};

}  // namespace mireth::platform
