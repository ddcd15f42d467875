#include "Platform/TouchDelivery.hpp"

#include <cstdio>
#include <utility>

#include "Base/ScopedFlag.hpp"
#include "Platform/TouchChecks.hpp"

namespace mireth::platform {

void TouchDelivery::deliver(const TouchEvent& event) {
    waiting_.push_back(event);
    if (isDelivering_) {
        return;
    }
    const ScopedFlag delivering(isDelivering_);
    while (!waiting_.empty()) {
        const TouchEvent next = std::move(waiting_.front());
        waiting_.pop_front();
        deliverNow(checked(next));
    }
}

TouchEvent TouchDelivery::checked(const TouchEvent& event) {
    TouchEvent result{event.timestamp, {}};
    for (const Touch& touch : event.touches) {
        if (hasTimeAndPlace(touch)) {
            result.touches.push_back(touch);
            continue;
        }
        tellOfRefusal();
        const auto* active = touches_.find(touch);
        if (isOver(touch) && active != nullptr) {
            // Nobody waits for its end.
            result.touches.push_back(cancelled(active->last));
        }
    }
    return result;
}

void TouchDelivery::tellOfRefusal() {
    if (!std::exchange(hasToldOfRefusal_, true)) {
        std::fputs("M-VEX: touches at no usable time or place are ignored\n", stderr);
    }
}

void TouchDelivery::deliverNow(const TouchEvent& event) {
    if (const TouchEvent lost = touches_.beginningAgain(event); !lost.touches.empty()) {
        deliverNow(lost);
    }
    touches_.track(event);
    recognizers_.tell(event);
    views_.tell(event);
    touches_.forget(event);
    if (touches_.isEmpty()) {
        recognizers_.makeReady();
    }
}

}  // namespace mireth::platform
