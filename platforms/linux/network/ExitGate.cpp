#include "platforms/linux/network/ExitGate.hpp"

#include <chrono>
#include <utility>

namespace mireth::platform {

namespace {

constexpr std::chrono::seconds patience(1);

}  // namespace

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
    Pass pass(mutex_);
    return isClosed_ ? Pass() : std::move(pass);
}

void ExitGate::leaveBehind(std::shared_ptr<void> object) {
    const std::unique_lock lock(mutex_);
    leftBehind_.push_back(std::move(object));
}

void ExitGate::close() {
    const std::unique_lock lock(mutex_, patience);
    if (lock) {
        isClosed_ = true;
    }
}

}  // namespace mireth::platform
