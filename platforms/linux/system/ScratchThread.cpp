#include "platforms/linux/system/ScratchThread.hpp"

#include <new>
#include <system_error>
#include <utility>

#include "platforms/linux/system/HelperThread.hpp"

namespace mireth::platform {

namespace {

/// Small enough to lie in the heap, whatever the C library has learned from the blocks it was given back.
constexpr std::size_t blockBytes = std::size_t{64} * 1024;
/// 16 MiB: enough where the largest block ever freed was a window of 1920 × 1080 pixels.
constexpr std::size_t blockCount = 256;

}  // namespace

ScratchThread::ScratchThread() {
    heapEnd_.reserve(blockCount);
    try {
        thread_ = startHelperThread("mireth-scratch", [this] { runSteps(); });
    } catch (const std::system_error&) {
        heapEnd_.shrink_to_fit();  // `run` does without a thread, and so without this room
    }
}

ScratchThread::~ScratchThread() {
    if (thread_.joinable()) {
        {
            const std::lock_guard lock(mutex_);
            isEnding_ = true;
        }
        changed_.notify_all();
        // With the thread goes its store of small blocks, which would have kept the heap in pieces.
        thread_.join();
    }
    // Now all that was freed is one with these, and they are more than the C library keeps.
    heapEnd_.clear();
}

void ScratchThread::run(Work step) {
    if (!thread_.joinable()) {
        step();
        return;
    }
    std::unique_lock lock(mutex_);
    step_ = std::move(step);
    isDone_ = false;
    changed_.notify_all();
    changed_.wait(lock, [this] { return isDone_; });
    if (const auto error = std::exchange(error_, nullptr)) {
        std::rethrow_exception(error);
    }
}

void ScratchThread::runSteps() {
    while (Work step = nextStep()) {
        std::exception_ptr error;
        try {
            step();
        } catch (...) {
            error = std::current_exception();
        }
        step = nullptr;
        finishStep(std::move(error));
    }
    lengthenHeap();
}

Work ScratchThread::nextStep() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return step_ || isEnding_; });
    return std::exchange(step_, nullptr);
}

void ScratchThread::finishStep(std::exception_ptr error) {
    {
        const std::lock_guard lock(mutex_);
        error_ = std::move(error);
        isDone_ = true;
    }
    changed_.notify_all();
}

/// With blocks that are not touched, so that they take next to nothing themselves.
void ScratchThread::lengthenHeap() noexcept {
    while (heapEnd_.size() < blockCount) {
        Block block(new (std::nothrow) std::byte[blockBytes]);
        if (block == nullptr) {
            return;
        }
        heapEnd_.push_back(std::move(block));
    }
}

}  // namespace mireth::platform
