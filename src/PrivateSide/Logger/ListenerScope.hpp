// Marks what a thread does inside a log listener, so that a listener which logs cannot feed itself.
#pragma once

namespace mireth {

/// While one lives, its thread counts as inside a listener: what the logger writes there reaches the system
/// log only. Scopes may nest; they end in the reverse order, on the thread that began them. Any thread.
class ListenerScope {
  public:
    ListenerScope() noexcept;
    ~ListenerScope();
    ListenerScope(const ListenerScope&) = delete;
    ListenerScope& operator=(const ListenerScope&) = delete;

    /// Whether the calling thread is inside a listener.
    static bool isInside() noexcept;

  private:
    const bool wasInside_;
};

}  // namespace mireth
