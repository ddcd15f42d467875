#include "Platform/ActiveTouches.hpp"

namespace mireth::platform {

ActiveTouch* ActiveTouches::find(const Touch& touch) {
    const auto found = byIdentity_.find(touch.identity);
    return found == byIdentity_.end() ? nullptr : &found->second;
}

const ActiveTouch* ActiveTouches::find(const Touch& touch) const {
    const auto found = byIdentity_.find(touch.identity);
    return found == byIdentity_.end() ? nullptr : &found->second;
}

TouchEvent ActiveTouches::beginningAgain(const TouchEvent& event) const {
    TouchEvent lost{event.timestamp, {}};
    for (const Touch& touch : event.touches) {
        const auto* active = find(touch);
        if (touch.phase == TouchPhase::began && active != nullptr) {
            lost.touches.push_back(cancelled(active->last));
        }
    }
    return lost;
}

void ActiveTouches::track(const TouchEvent& event) {
    for (const Touch& touch : event.touches) {
        if (touch.phase == TouchPhase::began) {
            byIdentity_[touch.identity] = {.last = touch, .view = touch.view, .knownTo = {}};
        } else if (auto* active = find(touch)) {
            active->last = touch;
        }
    }
}

void ActiveTouches::forget(const TouchEvent& event) {
    for (const Touch& touch : event.touches) {
        if (isOver(touch)) {
            byIdentity_.erase(touch.identity);
        }
    }
}

}  // namespace mireth::platform
