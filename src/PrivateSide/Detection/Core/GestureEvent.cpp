#include "PrivateSide/Detection/Core/GestureEvent.hpp"

#include <utility>

namespace mireth {

GestureEvent::GestureEvent(Kind kind, TouchData touchData, std::weak_ptr<platform::View> view)
    : kind_(kind), touchData_(touchData), view_(std::move(view)) {}

GestureEvent GestureEvent::tap(TouchData touchData, std::weak_ptr<platform::View> view) {
    return {Kind::tap, touchData, std::move(view)};
}

GestureEvent GestureEvent::quadrupleTap(TouchData touchData, std::weak_ptr<platform::View> view) {
    return {Kind::quadrupleTap, touchData, std::move(view)};
}

std::string_view GestureEvent::key() const noexcept {
    switch (kind_) {
        case Kind::tap:
            return "SingleTap";
        case Kind::quadrupleTap:
            return "QuadrupleTap";
        case Kind::undefined:
            return "Undefined";
        case Kind::swipeLeft:
            return "SwipeLeft";
        case Kind::swipeRight:
            return "SwipeRight";
    }
    return "";
}

std::string_view GestureEvent::debugInfo() const noexcept {
    switch (kind_) {
        case Kind::tap:
            return "Single Tap Detected";
        case Kind::quadrupleTap:
            return "Quadruple Tap Detected";
        case Kind::undefined:
            return "Undefined";
        case Kind::swipeLeft:
            return "Swipe Left Detected";
        case Kind::swipeRight:
            return "Swipe Right Detected";
    }
    return "";
}

bool operator==(const GestureEvent& left, const GestureEvent& right) {
    return left.kind_ == right.kind_ && left.touchData_ == right.touchData_ &&
           left.getTargetView() == right.getTargetView();
}

}  // namespace mireth
