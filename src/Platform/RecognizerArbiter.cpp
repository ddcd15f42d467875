#include "Platform/RecognizerArbiter.hpp"

#include <algorithm>

#include "Base/GuardedRun.hpp"
#include "Platform/TouchCalls.hpp"

namespace mireth::platform {

namespace {

using State = GestureRecognizer::State;

bool hasRecognized(const GestureRecognizer& recognizer) {
    const State state = recognizer.state();
    return state == State::began || state == State::changed || state == State::ended;
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

void RecognizerArbiter::tell(const TouchEvent& event) {
    const Recognizers recognizers = recognizers_;
    for (const auto& recognizer : recognizers) {
        tell(*recognizer, event);
    }
}

void RecognizerArbiter::makeReady() {
    for (const auto& recognizer : recognizers_) {
        recognizer->setState(State::possible);
    }
}

void RecognizerArbiter::wasRemoved(GestureRecognizer& recognizer) {
    cancelTouchesOf(recognizer);
    recognizer.setState(State::possible);
}

void RecognizerArbiter::tell(GestureRecognizer& recognizer, const TouchEvent& event) {
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
        tellPhase(recognizer, phase, event);
    }
}

void RecognizerArbiter::tellPhase(GestureRecognizer& recognizer, TouchPhase phase, const TouchEvent& event) {
    const std::vector<Touch> touches = touchesFor(recognizer, phase, event);
    if (!touches.empty()) {
        runGuarded("a gesture recogniser", [&] { call(recognizer, phase, touches, event); });
        takeFromViews(recognizer, touches);
    }
}

std::vector<Touch> RecognizerArbiter::touchesFor(const GestureRecognizer& recognizer, TouchPhase phase,
                                                 const TouchEvent& event) {
    std::vector<Touch> touches;
    for (const Touch& touch : event.touches) {
        auto* active = touches_.find(touch);
        if (touch.phase != phase || active == nullptr) {
            continue;
        }
        auto& knownTo = active->knownTo;
        if (phase == TouchPhase::began) {
            knownTo.push_back(&recognizer);
        } else if (std::ranges::find(knownTo, &recognizer) == knownTo.end()) {
            continue;
        } else if (isOver(touch)) {
            std::erase(knownTo, &recognizer);
        }
        touches.push_back(touch);
    }
    return touches;
}

void RecognizerArbiter::takeFromViews(const GestureRecognizer& recognizer,
                                      const std::vector<Touch>& touches) {
    if (!recognizer.cancelsTouchesInView() || !hasRecognized(recognizer)) {
        return;
    }
    for (auto& [identity, active] : touches_.all()) {
        // What the recogniser has just heard the end of is its own as well.
        if (std::ranges::find(active.knownTo, &recognizer) != active.knownTo.end() ||
            std::ranges::find(touches, identity, &Touch::identity) != touches.end()) {
            active.isTakenFromView = true;
        }
    }
}

void RecognizerArbiter::cancelTouchesOf(GestureRecognizer& recognizer) {
    TouchEvent event;
    for (auto& [identity, active] : touches_.all()) {
        if (std::erase(active.knownTo, &recognizer) > 0) {
            event.timestamp = std::max(event.timestamp, active.last.timestamp);
            event.touches.push_back(cancelled(active.last));
        }
    }
    if (!event.touches.empty()) {
        runGuarded("a gesture recogniser", [&] { recognizer.touchesCancelled(event.touches, event); });
    }
}

bool RecognizerArbiter::isOfWindow(const GestureRecognizer& recognizer) const {
    return std::ranges::find(recognizers_, &recognizer, &std::shared_ptr<GestureRecognizer>::get) !=
           recognizers_.end();
}

bool RecognizerArbiter::isExcluded(GestureRecognizer& recognizer) const {
    // A copy: a delegate may add or remove some.
    const Recognizers recognizers = recognizers_;
    return std::ranges::any_of(recognizers, [&](const auto& other) {
        return other.get() != &recognizer && other->isEnabled() && hasRecognized(*other) &&
               !allowsBoth(*other, recognizer) && !allowsBoth(recognizer, *other);
    });
}

}  // namespace mireth::platform
