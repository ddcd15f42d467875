// Timers on the phone's queue, counted until they have run.
#include "phone/ScriptTimers.hpp"

#include <utility>

namespace mireth::phone {

ScriptTimers::ScriptTimers(headless::VirtualMainQueue& queue, Failure onFailure)
    : queue_(queue), onFailure_(std::move(onFailure)) {}

void ScriptTimers::set(std::chrono::nanoseconds delay, Work work) {
    ++pending_;
    queue_.postAfter(delay, [this, work = std::move(work)]() mutable { run(work); });
}

void ScriptTimers::run(Work& work) noexcept {
    lastRun_ = queue_.now();
    try {
        work();
    } catch (...) {
        onFailure_(std::current_exception());
    }
    --pending_;
}

}  // namespace mireth::phone
