// Where work runs that must not run on the main thread.
#pragma once

#include "MirethVex/Base/Work.hpp"

namespace mireth::platform {

/// Runs work on threads of its own. Encoding, files, uploads and log posts go here.
///
/// Work may run in parallel with other work and in any order; one thread is enough. What it throws is caught
/// and reported, on Linux on standard error. Destruction waits for work that is running, but for the one that
/// destroys, and drops what has not begun.
class BackgroundExecutor {
  public:
    virtual ~BackgroundExecutor() = default;
    /// Runs `work` later. Returns at once. Any thread.
    virtual void post(Work work) = 0;
};

}  // namespace mireth::platform
