// A thread of its own for work that takes much memory for a short time.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "MirethVex/Base/Work.hpp"

namespace mireth::platform {

/// Freed memory mostly stays with the process: the C library keeps it for the next who asks, at the end of a
/// thread's heap up to twice the largest block the process ever freed. What steps that run here have
/// allocated and freed goes back to the system when the object goes. What they leave behind stays good, but
/// holds up what lies below it; so does a small block that another thread has freed.
///
/// The owner's thread waits for each step, so steps may use what the owner could. One thread at a time.
class ScratchThread {
  public:
    /// Without a thread to be had, steps run on the owner's.
    ScratchThread();
    ScratchThread(const ScratchThread&) = delete;
    ScratchThread& operator=(const ScratchThread&) = delete;
    ~ScratchThread();

    /// Runs `step` and waits for it. What it throws is thrown here.
    void run(Work step);

  private:
    using Block = std::unique_ptr<std::byte[]>;

    void runSteps();
    /// Null when the thread is to end.
    Work nextStep();
    void finishStep(std::exception_ptr error);
    void lengthenHeap() noexcept;

    std::mutex mutex_;
    std::condition_variable changed_;
    // Guarded by mutex_
    Work step_;
    bool isDone_ = true;
    bool isEnding_ = false;
    std::exception_ptr error_;

    /// The thread's until it has ended, the owner's then.
    std::vector<Block> heapEnd_;
    std::thread thread_;
};

}  // namespace mireth::platform
