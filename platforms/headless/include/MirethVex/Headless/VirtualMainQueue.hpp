// A main queue whose time is the script's. Tests and mireth-phone run the library on it: in virtual time a
// session of minutes takes as long as its work takes, and every run is the same.
#pragma once

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>

#include "MirethVex/Headless/InFlight.hpp"
#include "MirethVex/Headless/WakeUp.hpp"
#include "MirethVex/Platform/MainQueue.hpp"

namespace mireth::headless {

class Schedule;

/// The thread that makes the queue is the main thread: there it is driven, and there it is destroyed.
///
/// Without a pace, time is virtual. The loop runs posted work in order; when none is left it takes up what is
/// in flight, waiting for it; and only when nothing is in flight either does time advance, to the next due
/// item. So a request or an encode takes no virtual time. Items due at one instant run in the order in which
/// they were set, timers and delayed work before steps, and between two of them the loop does all of the
/// above again.
///
/// With a pace, time follows the steady clock times the pace, from the first drive on. What is in flight then
/// takes real time, and the loop sleeps until the next item is due or something is posted.
class VirtualMainQueue final : public platform::MainQueue {
  public:
    using Instant = std::chrono::nanoseconds;
    /// Told, in words, what work has thrown. Main thread.
    using ErrorHandler = std::function<void(std::string_view description)>;

    /// `pace` > 0: seconds of the script in one real second. Nothing: virtual time. `onEscapedError`:
    /// standard error when left out.
    explicit VirtualMainQueue(std::optional<double> pace = std::nullopt, ErrorHandler onEscapedError = {});
    VirtualMainQueue(const VirtualMainQueue&) = delete;
    VirtualMainQueue& operator=(const VirtualMainQueue&) = delete;
    ~VirtualMainQueue() override;

    void post(Work work) override;
    void postAfter(platform::Seconds delay, Work work) override;
    std::unique_ptr<platform::Timer> scheduleRepeating(platform::Seconds interval, Work tick) override;
    /// False while the loop runs background work, though that runs on the same thread.
    bool isCurrent() const noexcept override;

    /// Runs `work` on the loop's thread, in turn with what is posted, as work that is not on main. Any
    /// thread.
    void postBackground(Work work);
    /// Runs `work` at `at`, after the timers of that instant. An instant already past counts as now.
    void scheduleStep(Instant at, Work work);

    /// Time since the beginning. Any thread.
    Instant now() const;
    bool isVirtual() const noexcept { return !pace_.has_value(); }
    /// Delayed work and steps due by `limit` and not yet run; repeating timers do not count.
    std::size_t onceCount(Instant limit = Instant::max()) const;
    const std::shared_ptr<InFlight>& inFlight() const noexcept { return inFlight_; }

    // Driving. Main thread only, and not from work that the queue runs.

    /// Runs until `isDone`, which is asked before each piece of work, is true. Gives up when there is nothing
    /// left that could happen by `limit`, and has reached `limit` then if there was one. Returns whether it
    /// was done.
    bool runUntil(const std::function<bool()>& isDone, std::optional<Instant> limit = std::nullopt);
    /// Runs all that happens in the next `span`, the items due at its end included, and what these set off.
    void advance(platform::Seconds span);
    /// Runs what is posted and in flight, and what follows from it, until none of it is left.
    void drain();
    /// Drops everything that is posted, due or in flight. Later posts are dropped too.
    void shutDown() noexcept;

  private:
    struct Posted {
        Work work;
        bool isBackground = false;
    };

    void enqueue(Posted posted);
    bool runOnePosted();
    bool takeUpFinished();
    bool isIdle() const;
    /// False when nothing can happen by `limit` any more.
    bool moveOn(std::uint64_t seen, std::optional<Instant> limit);
    bool moveOnVirtually(std::uint64_t seen, std::optional<Instant> limit);
    bool moveOnPaced(std::uint64_t seen, std::optional<Instant> limit);
    void beginPacing();
    std::chrono::steady_clock::time_point steadyTime(Instant at) const;

    const std::optional<double> pace_;
    const ErrorHandler onEscapedError_;
    const std::thread::id mainThread_;
    const std::shared_ptr<WakeUp> wakeUp_;
    const std::shared_ptr<InFlight> inFlight_;
    const std::shared_ptr<Schedule> schedule_;

    bool runsBackground_ = false;                      // main thread only
    std::atomic<Instant> virtualNow_ = Instant(0);     // virtual time
    std::atomic<bool> pacing_{false};                  // paced: set once `paceBegin_` is there
    std::chrono::steady_clock::time_point paceBegin_;  // written before pacing_

    mutable std::mutex mutex_;
    std::deque<Posted> posted_;  // guarded by mutex_
    bool closed_ = false;        // guarded by mutex_
};

}  // namespace mireth::headless
