// A unit of work handed to a queue or an executor.
#pragma once

#include <functional>

namespace mireth {

/// Called at most once, on the queue or executor it was handed to. Move-only, so that it may own what it
/// needs. Null is work that does nothing.
using Work = std::move_only_function<void()>;

}  // namespace mireth
