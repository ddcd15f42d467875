// For places where nothing may be thrown, destructors above all, and coroutines are resumed or let go.
#pragma once

namespace mireth {

/// While one lives, executors on this thread drop work that its service does not take, with a line on
/// standard error. Elsewhere whoever posts hears what the service throws.
class DroppingScope {
  public:
    DroppingScope() noexcept { ++open; }
    DroppingScope(const DroppingScope&) = delete;
    DroppingScope& operator=(const DroppingScope&) = delete;
    ~DroppingScope() { --open; }

    static bool isOpen() noexcept { return open > 0; }

  private:
    /// How many this thread is in. A thread's own, not shared state.
    static inline thread_local int open = 0;
};

}  // namespace mireth
