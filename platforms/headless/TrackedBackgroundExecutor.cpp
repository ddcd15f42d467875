// Work wrapped with the operation that counts it.
#include "MirethVex/Headless/TrackedBackgroundExecutor.hpp"

#include <utility>

namespace mireth::headless {

void TrackedBackgroundExecutor::post(Work work) {
    // The operation is declared before the work it outlives: when both are dropped, the work goes first.
    struct Tracked {
        InFlight::Operation operation;
        Work work;
    };
    auto tracked = std::make_unique<Tracked>(inFlight_->begin(), std::move(work));
    inner_->post([tracked = std::move(tracked)]() mutable {
        const auto running = std::move(tracked);
        if (running->work) {
            running->work();
        }
    });
}

}  // namespace mireth::headless
