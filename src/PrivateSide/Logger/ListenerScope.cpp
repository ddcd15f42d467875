#include "PrivateSide/Logger/ListenerScope.hpp"

#include <utility>

namespace mireth {

namespace {

/// A thread's own flag, not shared state.
thread_local bool insideListener = false;

}  // namespace

ListenerScope::ListenerScope() noexcept : wasInside_(std::exchange(insideListener, true)) {}

ListenerScope::~ListenerScope() {
    insideListener = wasInside_;
}

bool ListenerScope::isInside() noexcept {
    return insideListener;
}

}  // namespace mireth
