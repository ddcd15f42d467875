// Boost.Asio executors over the platform's main queue and background executor, so that coroutines run there.
// What a service's `post` throws reaches whoever posts, but in a DroppingScope.
#pragma once

#include <memory>

#include "MirethVex/Platform/BackgroundExecutor.hpp"
#include "MirethVex/Platform/MainQueue.hpp"
#include "Platform/Async/Task.hpp"

namespace mireth {

/// Runs on the main thread: inline when the caller may be blocked and is there already, else posted. The
/// queue is held weakly; once it is gone, work is dropped.
Executor makeMainExecutor(const std::shared_ptr<platform::MainQueue>& queue);

/// Runs in the background, always posted. The executor is held weakly.
Executor makeBackgroundExecutor(const std::shared_ptr<platform::BackgroundExecutor>& background);

/// Runs work one at a time and in order, on `executor`.
Executor makeSerialExecutor(const Executor& executor);

}  // namespace mireth
