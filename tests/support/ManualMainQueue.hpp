// A main queue that runs only when a test says so, with time of its own.
#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "Base/GuardedRun.hpp"
#include "MirethVex/Platform/MainQueue.hpp"

namespace mireth::test {

/// The thread that makes it is the main thread. Work may be posted from any thread.
class ManualMainQueue final : public platform::MainQueue {
  public:
    /// Without a handler, what work throws comes out of the call that runs it: nothing in a test should throw
    /// on a queue, and so the test fails.
    explicit ManualMainQueue(EscapedErrorHandler onEscapedError = {})
        : onEscapedError_(std::move(onEscapedError)) {}

    void post(Work work) override {
        const std::lock_guard lock(mutex_);
        ready_.push_back(std::move(work));
    }

    void postAfter(platform::Seconds delay, Work work) override {
        if (!(delay > platform::Seconds::zero())) {
            return post(std::move(work));
        }
        const std::lock_guard lock(mutex_);
        delayed_.push_back({now_ + delay, std::move(work)});
    }

    std::unique_ptr<platform::Timer> scheduleRepeating(platform::Seconds interval, Work tick) override {
        const std::lock_guard lock(mutex_);
        auto state = std::make_shared<Repeating>(interval, now_ + interval, std::move(tick));
        timers_.push_back(state);
        return std::make_unique<Handle>(std::move(state));
    }

    bool isCurrent() const noexcept override { return std::this_thread::get_id() == mainThread_; }

    /// Runs what has been posted and what that posts. True when there was anything.
    bool runAll() {
        bool ran = false;
        while (runOne()) {
            ran = true;
        }
        return ran;
    }

    /// Runs one piece of work. False when there was none.
    bool runOne() {
        auto work = next();
        if (work) {
            run(*work);
        }
        return work.has_value();
    }

    /// Since the beginning.
    platform::Seconds now() const { return now_; }

    /// Runs everything that is due within `duration`, in the order in which it is due.
    void advance(platform::Seconds duration) {
        const auto end = now_ + duration;
        runAll();
        for (;;) {
            const auto due = nextDue();
            if (due > end) {
                break;
            }
            now_ = due;
            runDue();
            runAll();
        }
        now_ = end;
    }

    std::size_t runningTimers() const {
        const std::lock_guard lock(mutex_);
        return static_cast<std::size_t>(
            std::ranges::count_if(timers_, [](const auto& timer) { return !timer.expired(); }));
    }

  private:
    struct Repeating {
        Repeating(platform::Seconds theInterval, platform::Seconds theDue, Work theTick)
            : interval(theInterval), due(theDue), tick(std::move(theTick)) {}
        platform::Seconds interval;
        platform::Seconds due;
        Work tick;
        bool valid = true;
    };
    struct Handle final : platform::Timer {
        explicit Handle(std::shared_ptr<Repeating> theState) : state(std::move(theState)) {}
        ~Handle() override { Handle::invalidate(); }
        void invalidate() override { state->valid = false; }
        std::shared_ptr<Repeating> state;
    };
    struct Delayed {
        platform::Seconds due;
        Work work;
    };

    void run(Work& work) {
        if (!work) {
            return;
        }
        if (onEscapedError_) {
            runGuarded("work", work, onEscapedError_);
        } else {
            work();
        }
    }

    std::optional<Work> next() {
        const std::lock_guard lock(mutex_);
        if (ready_.empty()) {
            return std::nullopt;
        }
        Work work = std::move(ready_.front());
        ready_.pop_front();
        return work;
    }

    platform::Seconds nextDue() const {
        const std::lock_guard lock(mutex_);
        auto due = platform::Seconds::max();
        for (const auto& timer : timers_) {
            if (const auto state = timer.lock(); state && state->valid) {
                due = std::min(due, state->due);
            }
        }
        for (const auto& delayed : delayed_) {
            due = std::min(due, delayed.due);
        }
        return due;
    }

    void runDue() {
        std::vector<std::shared_ptr<Repeating>> ticking;
        {
            const std::lock_guard lock(mutex_);
            for (const auto& timer : timers_) {
                if (auto state = timer.lock(); state && state->valid && state->due <= now_) {
                    ticking.push_back(std::move(state));
                }
            }
            for (auto& delayed : delayed_) {
                if (delayed.due <= now_) {
                    ready_.push_back(std::move(delayed.work));
                }
            }
            std::erase_if(delayed_, [this](const Delayed& delayed) { return delayed.due <= now_; });
        }
        for (const auto& timer : ticking) {
            if (timer->valid) {
                timer->due += timer->interval;
                run(timer->tick);
            }
        }
    }

    const EscapedErrorHandler onEscapedError_;
    const std::thread::id mainThread_ = std::this_thread::get_id();
    // Main only
    platform::Seconds now_{0};

    mutable std::mutex mutex_;
    std::deque<Work> ready_;                        // guarded by mutex_
    std::vector<Delayed> delayed_;                  // guarded by mutex_
    std::vector<std::weak_ptr<Repeating>> timers_;  // guarded by mutex_
};

}  // namespace mireth::test
