// Starts the threads that the Linux services keep for themselves.
#pragma once

#include <thread>

#include "MirethVex/Base/Work.hpp"

namespace mireth::platform {

/// Starts a thread called `name` (at most 15 characters) that runs `body`, which must not throw.
///
/// Signals meant for the host are blocked on it, so that the host's handlers keep running on the host's
/// threads; SIGPIPE is among them, so a write to a closed connection is an error code. Signals that a fault
/// raises stay open for a crash reporter. Throws std::system_error when no thread can be had.
std::thread startHelperThread(const char* name, Work body);

}  // namespace mireth::platform
