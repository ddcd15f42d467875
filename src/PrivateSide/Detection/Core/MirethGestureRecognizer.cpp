#include "PrivateSide/Detection/Core/MirethGestureRecognizer.hpp"

#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <utility>

#include "MirethVex/Base/FatalError.hpp"

namespace mireth {

namespace {

std::string describe(Point point) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out.precision(std::numeric_limits<double>::digits10);
    out << '(' << point.x << ", " << point.y << ')';
    return out.str();
}

/// Whole milliseconds, rounded toward zero.
std::int64_t milliseconds(double seconds) {
    const double exact = std::trunc(seconds * 1000);
    // The upper bound is 2^63, the first value that does not fit.
    constexpr double low = -9223372036854775808.0;
    if (!(exact >= low && exact < -low)) {
        fatalError("The timestamp of a touch does not fit into 64 bits of milliseconds");
    }
    return static_cast<std::int64_t>(exact);
}

}  // namespace

MirethGestureRecognizer::MirethGestureRecognizer(
    MirethLog& log, std::shared_ptr<GestureRecognizerObserver> gestureRecognizerObserver)
    : log_(log), gestureRecognizer_(std::move(gestureRecognizerObserver)) {
    const auto subscribe = [this](const AnyPublisher<GestureRecognizerObserver::Gesture>& stream,
                                  void (MirethGestureRecognizer::*handle)(const platform::Touch&)) {
        cancellables_.push_back(
            stream.sink([this, handle](const GestureRecognizerObserver::Gesture& gesture) {
                for (const auto& touch : gesture.touches) {
                    (this->*handle)(touch);
                }
            }));
    };
    const GestureRecognizerObserver& observer = *gestureRecognizer_;
    subscribe(observer.touchesBegan(), &MirethGestureRecognizer::touchBegan);
    subscribe(observer.touchesMoved(), &MirethGestureRecognizer::touchMoved);
    subscribe(observer.touchesEnded(), &MirethGestureRecognizer::touchEnded);
    subscribe(observer.touchesCancelled(), &MirethGestureRecognizer::touchCancelled);
}

void MirethGestureRecognizer::touchBegan(const platform::Touch& touch) {
    touchesInProgress_[touch.identity] = {touch.locationInWindow};
}

void MirethGestureRecognizer::touchMoved(const platform::Touch& touch) {
    const auto points = touchesInProgress_.find(touch.identity);
    if (points != touchesInProgress_.end()) {
        points->second.push_back(touch.locationInWindow);
    }
}

void MirethGestureRecognizer::touchEnded(const platform::Touch& touch) {
    const auto points = touchesInProgress_.find(touch.identity);
    if (points == touchesInProgress_.end()) {
        return;
    }
    const auto result = evaluate(points->second);
    // Before anybody hears of it: a subscriber may bring the next touch, or the end of this object.
    touchesInProgress_.erase(points);
    if (result == GestureEvaluationResult::tap) {
        handleTap(touch);
    } else {
        recognizedGestureSubject_.send(GestureEvent::undefined());
    }
}

void MirethGestureRecognizer::touchCancelled(const platform::Touch& touch) {
    touchesInProgress_.erase(touch.identity);
}

MirethGestureRecognizer::GestureEvaluationResult MirethGestureRecognizer::evaluate(
    const std::vector<Point>& points) {
    // No tolerance: one move of any size makes it something else.
    return points.size() == 1 ? GestureEvaluationResult::tap : GestureEvaluationResult::other;
}

void MirethGestureRecognizer::handleTap(const platform::Touch& touch) {
    const Point location = touch.locationInWindow;
    const auto touchData = [&] { return TouchData{location.x, location.y, milliseconds(touch.timestamp)}; };
    switch (touch.tapCount) {
        case 1:
            log_.info(LogTag::gesture, "Single Tap.", {{"location", describe(location)}});
            recognizedGestureSubject_.send(GestureEvent::tap(touchData(), touch.view));
            break;
        case 4:
            log_.info(LogTag::gesture, "Quadruple Tap.", {{"location", describe(location)}});
            recognizedGestureSubject_.send(GestureEvent::quadrupleTap(touchData(), touch.view));
            break;
        default:
            // The second and third taps of a run are not single ones, and only the fourth is a signal.
            break;
    }
}

}  // namespace mireth
