// A counter that one can sleep on.
#include "MirethVex/Headless/WakeUp.hpp"

namespace mireth::headless {

void WakeUp::raise() {
    {
        const std::lock_guard lock(mutex_);
        ++count_;
    }
    changed_.notify_all();
}

std::uint64_t WakeUp::count() const {
    const std::lock_guard lock(mutex_);
    return count_;
}

void WakeUp::waitUnless(std::uint64_t seen, Deadline deadline) const {
    std::unique_lock lock(mutex_);
    const auto happened = [this, seen] { return count_ != seen; };
    if (deadline) {
        changed_.wait_until(lock, *deadline, happened);
    } else {
        changed_.wait(lock, happened);
    }
}

}  // namespace mireth::headless
