#include "platforms/linux/network/ExitGate.hpp"

#include <utility>

namespace mireth::platform {

ExitGate& ExitGate::ofThisProcess() {
    // The gate itself is never destroyed: threads come to it as long as the process runs.
    static auto& gate = *new ExitGate;
    struct Closer {
        Closer() = default;
        Closer(const Closer&) = delete;
        Closer& operator=(const Closer&) = delete;
        ~Closer() { gate.close(); }
    };
    static const Closer closer;
    return gate;
}

ExitGate::Pass ExitGate::enter() {
    // Before the lock too: a mutex that prefers readers would let them keep `close` out.
    if (isClosed_) {
        return {};
    }
    Pass pass(passes_);
    return isClosed_ ? Pass() : std::move(pass);
}

void ExitGate::close() {
    // First of all: a thread that comes back after the wait is over must find the gate closed.
    isClosed_ = true;
    const std::unique_lock lock(passes_, patience_);
}

void ExitGate::leaveBehind(std::shared_ptr<void> object) {
    const std::lock_guard lock(leavingMutex_);
    leftBehind_.push_back(std::move(object));
}

}  // namespace mireth::platform
