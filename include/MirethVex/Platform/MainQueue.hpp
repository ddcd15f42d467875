// The host's main thread, as the library sees it.
#pragma once

#include <chrono>
#include <memory>

#include "MirethVex/Base/Work.hpp"

namespace mireth::platform {

using Seconds = std::chrono::duration<double>;

/// A running timer. Main thread only. Dropping it invalidates it. It may outlive its queue, and then does
/// nothing.
class Timer {
  public:
    virtual ~Timer() = default;
    /// No tick begins after this returns. A second call does nothing.
    virtual void invalidate() = 0;
};

/// Runs work on one thread, in order; what runs here is "the main thread". The library keeps its session
/// state, the view tree, masking and rendering there.
///
/// Whatever work throws is caught and reported by the queue, on Linux and in Qt on standard error; it never
/// ends the loop. Work still queued when the queue is destroyed is dropped without being run. A toolkit's
/// queue goes on inside nested loops, as for a dialog. It may outlive its loop: see PlatformServices.
class MainQueue {
  public:
    virtual ~MainQueue() = default;

    /// Runs `work` later on the main thread, after what was posted before. Never inline. Any thread.
    virtual void post(Work work) = 0;

    /// Runs `work` once on the main thread, `delay` from now or as soon after as possible; a delay that is
    /// zero or less, or not a number, behaves like `post`. Any thread.
    virtual void postAfter(Seconds delay, Work work) = 0;

    /// Calls `tick` on the main thread every `interval` (> 0; a millisecond at least on Linux and in Qt),
    /// first after one interval, also while the user scrolls. Ticks keep their phase: a late one does not
    /// shift the next; ticks missed altogether are not made up for. Main thread only.
    virtual std::unique_ptr<Timer> scheduleRepeating(Seconds interval, Work tick) = 0;

    /// True when the caller is on the main thread. Any thread.
    virtual bool isCurrent() const noexcept = 0;
};

}  // namespace mireth::platform
