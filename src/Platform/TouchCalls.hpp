// How a recogniser or a view is told of touches.
#pragma once

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

}  // namespace mireth::platform
