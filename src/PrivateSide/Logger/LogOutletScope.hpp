// Marks what a thread does inside those whom the logger tells, so that one who logs cannot feed itself.
#pragma once

#include <cstdint>

namespace mireth {

/// Whom the logger is telling.
enum class LogOutlet : std::uint8_t {
    none,
    /// What is logged in here reaches the system log only.
    listener,
    /// The system log may be the host's own. What is logged in here reaches nobody.
    systemLog,
};

/// While one lives, its thread counts as inside `outlet`, or further inside than that if it was already.
/// Scopes may nest; they end in the reverse order, on the thread that began them. Any thread.
class LogOutletScope {
  public:
    explicit LogOutletScope(LogOutlet outlet) noexcept;
    ~LogOutletScope();
    LogOutletScope(const LogOutletScope&) = delete;
    LogOutletScope& operator=(const LogOutletScope&) = delete;

    /// What the calling thread is inside of.
    static LogOutlet current() noexcept;

  private:
    const LogOutlet before_;
};

}  // namespace mireth
