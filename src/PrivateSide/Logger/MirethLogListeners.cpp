#include "PrivateSide/Logger/MirethLogListeners.hpp"

#include <utility>

#include "Base/GuardedRun.hpp"
#include "PrivateSide/Logger/LogOutletScope.hpp"

namespace mireth {

void MirethLogListeners::add(Listener listener) {
    if (!listener) {
        return;
    }
    const std::lock_guard lock(mutex_);
    auto next = std::make_shared<List>(*listeners_);
    next->push_back(std::move(listener));
    listeners_ = std::move(next);
}

void MirethLogListeners::logToAll(LogTag tag, LogLevel level, const std::string& line) const {
    if (LogOutletScope::current() != LogOutlet::none) {
        return;
    }
    std::shared_ptr<const List> listeners;
    {
        const std::lock_guard lock(mutex_);
        listeners = listeners_;
    }
    const LogOutletScope scope(LogOutlet::listener);
    for (const auto& listener : *listeners) {
        runGuarded("a log listener", [&] { listener(tag, level, line); });
    }
}

}  // namespace mireth
