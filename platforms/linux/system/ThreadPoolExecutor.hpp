// Runs background work on a few threads. The usual BackgroundExecutor.
#pragma once

#include <cstddef>
#include <memory>

#include "Base/GuardedRun.hpp"
#include "MirethVex/Platform/BackgroundExecutor.hpp"

namespace mireth::platform {

/// Work begins in the order in which it was posted. May be destroyed by work that it runs: it then waits
/// for the other threads only.
class ThreadPoolExecutor final : public BackgroundExecutor {
  public:
    /// `threads` ≥ 1. `onEscapedError` is told on a pool thread what work has thrown; standard error when
    /// left out. Throws std::system_error when no thread can be had.
    explicit ThreadPoolExecutor(std::size_t threads = 2, EscapedErrorHandler onEscapedError = {});
    ThreadPoolExecutor(const ThreadPoolExecutor&) = delete;
    ThreadPoolExecutor& operator=(const ThreadPoolExecutor&) = delete;
    ~ThreadPoolExecutor() override;

    void post(Work work) override;

  private:
    void joinAll();
    struct Pool;
    std::shared_ptr<Pool> pool_;
};

}  // namespace mireth::platform
