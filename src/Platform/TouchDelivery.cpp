#include "Platform/TouchDelivery.hpp"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "Base/GuardedRun.hpp"
#include "Base/ScopedFlag.hpp"
#include "Platform/TouchCalls.hpp"
#include "Platform/TouchChecks.hpp"

namespace mireth::platform {

namespace {

bool isOver(const Touch& touch) {
    return touch.phase == TouchPhase::ended || touch.phase == TouchPhase::cancelled;
}

bool hasRecognized(const GestureRecognizer& recognizer) {
    using State = GestureRecognizer::State;
    const State state = recognizer.state();
    return state == State::began || state == State::changed || state == State::ended;
}

Touch cancelled(Touch touch) {
    touch.phase = TouchPhase::cancelled;
    return touch;
}

/// Whether the delegate of `recognizer` lets both go on.
bool allowsBoth(GestureRecognizer& recognizer, GestureRecognizer& other) {
    bool answer = false;
    if (auto* delegate = recognizer.delegate()) {
        runGuarded("a gesture recogniser's delegate",
                   [&] { answer = delegate->shouldRecognizeSimultaneouslyWith(recognizer, other); });
    }
    return answer;
}

}  // namespace

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
        const auto active = activeTouches_.find(touch.identity);
        if (isOver(touch) && active != activeTouches_.end()) {
            result.touches.push_back(cancelled(active->second.last));
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
    cancelTouchesThatBeginAgain(event);
    trackTouches(event);
    const Recognizers recognizers = recognizers_;
    for (const auto& recognizer : recognizers) {
        tellRecognizer(*recognizer, event);
    }
    tellViews(forViews(event));
    forgetTouches(event);
    if (activeTouches_.empty()) {
        for (const auto& recognizer : recognizers_) {
            recognizer->setState(GestureRecognizer::State::possible);
        }
    }
}

void TouchDelivery::cancelTouchesThatBeginAgain(const TouchEvent& event) {
    TouchEvent lost{event.timestamp, {}};
    for (const Touch& touch : event.touches) {
        const auto active = activeTouches_.find(touch.identity);
        if (touch.phase == TouchPhase::began && active != activeTouches_.end()) {
            lost.touches.push_back(cancelled(active->second.last));
        }
    }
    if (!lost.touches.empty()) {
        deliverNow(lost);
    }
}

void TouchDelivery::trackTouches(const TouchEvent& event) {
    for (const Touch& touch : event.touches) {
        if (touch.phase == TouchPhase::began) {
            activeTouches_[touch.identity] = {.last = touch, .view = touch.view, .knownTo = {}};
        } else if (const auto active = activeTouches_.find(touch.identity); active != activeTouches_.end()) {
            active->second.last = touch;
        }
    }
}

void TouchDelivery::forgetTouches(const TouchEvent& event) {
    for (const Touch& touch : event.touches) {
        if (isOver(touch)) {
            activeTouches_.erase(touch.identity);
        }
    }
}

void TouchDelivery::recognizerWasRemoved(GestureRecognizer& recognizer) {
    cancelTouchesOf(recognizer);
    recognizer.setState(GestureRecognizer::State::possible);
}

void TouchDelivery::tellRecognizer(GestureRecognizer& recognizer, const TouchEvent& event) {
    using State = GestureRecognizer::State;
    if (!isOfWindow(recognizer) || recognizer.state() == State::failed) {
        return;
    }
    if (!recognizer.isEnabled()) {
        cancelTouchesOf(recognizer);
        recognizer.setState(State::cancelled);
        return;
    }
    if (!hasRecognized(recognizer) && isExcluded(recognizer)) {
        cancelTouchesOf(recognizer);
        recognizer.setState(State::failed);
        return;
    }
    for (const TouchPhase phase : toldPhases) {
        tellRecognizer(recognizer, phase, event);
    }
}

void TouchDelivery::tellRecognizer(GestureRecognizer& recognizer, TouchPhase phase, const TouchEvent& event) {
    std::vector<Touch> touches;
    for (const Touch& touch : event.touches) {
        const auto active = activeTouches_.find(touch.identity);
        if (touch.phase != phase || active == activeTouches_.end()) {
            continue;
        }
        auto& knownTo = active->second.knownTo;
        if (phase == TouchPhase::began) {
            knownTo.push_back(&recognizer);
        } else if (std::ranges::find(knownTo, &recognizer) == knownTo.end()) {
            continue;
        } else if (isOver(touch)) {
            std::erase(knownTo, &recognizer);
        }
        touches.push_back(touch);
    }
    if (!touches.empty()) {
        runGuarded("a gesture recogniser", [&] { call(recognizer, phase, touches, event); });
        takeTouchesFromViews(recognizer, touches);
    }
}

void TouchDelivery::takeTouchesFromViews(const GestureRecognizer& recognizer,
                                         const std::vector<Touch>& touches) {
    if (!recognizer.cancelsTouchesInView() || !hasRecognized(recognizer)) {
        return;
    }
    for (auto& [identity, active] : activeTouches_) {
        // What the recogniser has just heard the end of is its own as well.
        if (std::ranges::find(active.knownTo, &recognizer) != active.knownTo.end() ||
            std::ranges::find(touches, identity, &Touch::identity) != touches.end()) {
            active.isTakenFromView = true;
        }
    }
}

void TouchDelivery::cancelTouchesOf(GestureRecognizer& recognizer) {
    TouchEvent event;
    for (auto& [identity, active] : activeTouches_) {
        if (std::erase(active.knownTo, &recognizer) > 0) {
            event.timestamp = std::max(event.timestamp, active.last.timestamp);
            event.touches.push_back(cancelled(active.last));
        }
    }
    if (!event.touches.empty()) {
        runGuarded("a gesture recogniser", [&] { recognizer.touchesCancelled(event.touches, event); });
    }
}

bool TouchDelivery::isOfWindow(const GestureRecognizer& recognizer) const {
    return std::ranges::find(recognizers_, &recognizer, &std::shared_ptr<GestureRecognizer>::get) !=
           recognizers_.end();
}

bool TouchDelivery::isExcluded(GestureRecognizer& recognizer) const {
    // A copy: a delegate may add or remove some.
    const Recognizers recognizers = recognizers_;
    return std::ranges::any_of(recognizers, [&](const auto& other) {
        return other.get() != &recognizer && other->isEnabled() && hasRecognized(*other) &&
               !allowsBoth(*other, recognizer) && !allowsBoth(recognizer, *other);
    });
}

TouchEvent TouchDelivery::forViews(const TouchEvent& event) {
    TouchEvent told{event.timestamp, {}};
    for (auto& [identity, active] : activeTouches_) {
        if (active.isTakenFromView && std::exchange(active.isKnownToView, false)) {
            told.touches.push_back(cancelled(active.last));
        }
    }
    for (const TouchPhase phase : toldPhases) {
        for (const Touch& touch : event.touches) {
            const auto found = activeTouches_.find(touch.identity);
            if (touch.phase != phase || found == activeTouches_.end() || found->second.isTakenFromView) {
                continue;
            }
            if (phase == TouchPhase::began) {
                found->second.isKnownToView = true;
            }
            told.touches.push_back(touch);
        }
    }
    return told;
}

void TouchDelivery::tellViews(const TouchEvent& event) {
    for (const TouchPhase phase : toldPhases) {
        for (const auto& group : touchesByView(phase, event)) {
            runGuarded("a view", [&] { call(*group.first, phase, group.second, event); });
        }
    }
}

TouchDelivery::TouchesByView TouchDelivery::touchesByView(TouchPhase phase, const TouchEvent& event) const {
    TouchesByView result;
    for (const Touch& touch : event.touches) {
        const auto active = activeTouches_.find(touch.identity);
        const auto view = active == activeTouches_.end() ? nullptr : active->second.view.lock();
        if (touch.phase != phase || view == nullptr) {
            continue;
        }
        auto group = std::ranges::find(result, view, &TouchesByView::value_type::first);
        if (group == result.end()) {
            group = result.insert(group, {view, {}});
        }
        group->second.push_back(touch);
    }
    return result;
}

}  // namespace mireth::platform
