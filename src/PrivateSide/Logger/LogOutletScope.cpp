#include "PrivateSide/Logger/LogOutletScope.hpp"

#include <algorithm>

namespace mireth {

namespace {

/// A thread's own, not shared state.
thread_local LogOutlet currentOutlet = LogOutlet::none;

}  // namespace

LogOutletScope::LogOutletScope(LogOutlet outlet) noexcept : before_(currentOutlet) {
    currentOutlet = std::max(before_, outlet);
}

LogOutletScope::~LogOutletScope() {
    currentOutlet = before_;
}

LogOutlet LogOutletScope::current() noexcept {
    return currentOutlet;
}

}  // namespace mireth
