// Brings the touches of one window to its recognisers and views. What happens with one event, in this order:
//
//   1. Touches that have no usable time or place are left out; one that ends so is cancelled instead.
//   2. A touch that begins though it has not ended is cancelled first, as an event of its own.
//   3. What begins is taken in (ActiveTouches).
//   4. The recognisers are told, one after the other, unless disabled or excluded by another
//   (RecognizerArbiter).
//   5. The views are told: that what a recogniser has just taken is cancelled, and of what is left
//   (ViewTouches).
//   6. What ends is forgotten. After the last finger the recognisers are ready for another gesture.
//
// Events that are sent meanwhile wait for their turn.
#pragma once

#include <deque>

#include "Platform/ActiveTouches.hpp"
#include "Platform/RecognizerArbiter.hpp"
#include "Platform/ViewTouches.hpp"

namespace mireth::platform {

/// Main thread. Owned by a window, which stays alive while something is delivered. Everybody who is told of a
/// touch may send, add, remove, disable or drop anything.
class TouchDelivery {
  public:
    using Recognizers = RecognizerArbiter::Recognizers;

    /// `recognizers` are the window's and live as long as this object.
    explicit TouchDelivery(const Recognizers& recognizers)
        : recognizers_(recognizers, touches_), views_(touches_) {}
    TouchDelivery(const TouchDelivery&) = delete;
    TouchDelivery& operator=(const TouchDelivery&) = delete;
    ~TouchDelivery() = default;

    /// At once, or after the event that is being delivered.
    void deliver(const TouchEvent& event);
    void recognizerWasRemoved(GestureRecognizer& recognizer) { recognizers_.wasRemoved(recognizer); }

  private:
    TouchEvent checked(const TouchEvent& event);
    /// Once a window: a toolkit that makes the mistake makes it at every touch.
    void tellOfRefusal();
    void deliverNow(const TouchEvent& event);

    ActiveTouches touches_;
    RecognizerArbiter recognizers_;
    ViewTouches views_;
    std::deque<TouchEvent> waiting_;
    bool isDelivering_ = false;
    bool hasToldOfRefusal_ = false;
};

}  // namespace mireth::platform
