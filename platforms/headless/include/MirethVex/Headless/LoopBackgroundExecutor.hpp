// Background work on the loop's own thread: the deterministic answer to BackgroundExecutor.
#pragma once

#include <memory>

#include "MirethVex/Headless/VirtualMainQueue.hpp"
#include "MirethVex/Platform/BackgroundExecutor.hpp"

namespace mireth::headless {

/// Work runs in the order in which it was posted, in turn with the work of the main queue, and does not see
/// itself as running on main. The queue is held weakly; once it is gone, work is dropped. Any thread.
class LoopBackgroundExecutor final : public platform::BackgroundExecutor {
  public:
    explicit LoopBackgroundExecutor(std::weak_ptr<VirtualMainQueue> queue) : queue_(std::move(queue)) {}

    void post(Work work) override {
        if (const auto queue = queue_.lock()) {
            queue->postBackground(std::move(work));
        }
    }

  private:
    const std::weak_ptr<VirtualMainQueue> queue_;
};

}  // namespace mireth::headless
