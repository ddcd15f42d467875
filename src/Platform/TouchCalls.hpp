// How a recogniser or a view is told of touches.
#pragma once

#include <cstdio>
#include <exception>
#include <utility>
#include <vector>

#include "MirethVex/Platform/Touch.hpp"

namespace mireth::platform {

/// The phases that have a handler, in the order in which those of one event are told.
inline constexpr TouchPhase toldPhases[] = {TouchPhase::began, TouchPhase::moved, TouchPhase::ended,
                                            TouchPhase::cancelled};

/// The handlers of recognisers and of views have the same names.
template <class Receiver>
void call(Receiver& receiver, TouchPhase phase, const std::vector<Touch>& touches, const TouchEvent& event) {
    switch (phase) {
        case TouchPhase::began:
            return receiver.touchesBegan(touches, event);
        case TouchPhase::moved:
            return receiver.touchesMoved(touches, event);
        case TouchPhase::ended:
            return receiver.touchesEnded(touches, event);
        case TouchPhase::cancelled:
            return receiver.touchesCancelled(touches, event);
        case TouchPhase::stationary:
            break;
    }
}

/// The code of others must not keep a touch from those who come after it.
template <class Function>
void guarded(const char* who, Function&& function) {
    try {
        std::forward<Function>(function)();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "M-VEX: %s threw: %s\n", who, error.what());
    } catch (...) {
        std::fprintf(stderr, "M-VEX: %s threw something that is not an exception\n", who);
    }
}

}  // namespace mireth::platform
