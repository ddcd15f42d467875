#include "PrivateSide/Detection/Core/GestureRecognizerObserver.hpp"

namespace mireth {

using platform::Touch;
using platform::TouchEvent;

GestureRecognizerObserver::GestureRecognizerObserver() {
    setEnabled(true);
    setCancelsTouchesInView(false);
    setDelegate(this);
}

void GestureRecognizerObserver::touchesBegan(const std::vector<Touch>& touches, const TouchEvent& event) {
    GestureRecognizer::touchesBegan(touches, event);
    setState(State::began);
    began_.send({touches, event});
}

void GestureRecognizerObserver::touchesMoved(const std::vector<Touch>& touches, const TouchEvent& event) {
    GestureRecognizer::touchesMoved(touches, event);
    setState(State::changed);
    moved_.send({touches, event});
}

void GestureRecognizerObserver::touchesEnded(const std::vector<Touch>& touches, const TouchEvent& event) {
    GestureRecognizer::touchesEnded(touches, event);
    setState(State::ended);
    ended_.send({touches, event});
}

void GestureRecognizerObserver::touchesCancelled(const std::vector<Touch>& touches, const TouchEvent& event) {
    GestureRecognizer::touchesCancelled(touches, event);
    setState(State::cancelled);
    cancelled_.send({touches, event});
}

bool GestureRecognizerObserver::shouldRecognizeSimultaneouslyWith(platform::GestureRecognizer& /*recognizer*/,
                                                                  platform::GestureRecognizer& /*other*/) {
    return true;
}

}  // namespace mireth
