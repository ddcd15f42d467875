#include "PrivateSide/Detection/Core/MirethGestureRecognizer.hpp"

#include <cmath>
#include <utility>

#include "Base/DecimalText.hpp"
#include "MirethVex/Base/FatalError.hpp"

namespace mireth {

namespace {

std::string describe(Point point) {
    return "(" + decimalText(point.x) + ", " + decimalText(point.y) + ")";
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
    : gestureRecognizer_(std::move(gestureRecognizerObserver)),
      tracker_(std::make_shared<Tracker>(log)),
      memoryUse_(log, "PrivateSide/Detection/Core/MirethGestureRecognizer") {
    subscribe(gestureRecognizer_->touchesBegan(), &Tracker::touchBegan);
    subscribe(gestureRecognizer_->touchesMoved(), &Tracker::touchMoved);
    subscribe(gestureRecognizer_->touchesEnded(), &Tracker::touchEnded);
    subscribe(gestureRecognizer_->touchesCancelled(), &Tracker::touchCancelled);
}

void MirethGestureRecognizer::subscribe(const AnyPublisher<GestureRecognizerObserver::Gesture>& stream,
                                        void (Tracker::*handle)(const platform::Touch&)) {
    cancellables_.push_back(stream.sink(
        [weak = std::weak_ptr(tracker_), handle](const GestureRecognizerObserver::Gesture& gesture) {
            for (const auto& touch : gesture.touches) {
                // For each touch anew: what one of them sets off may be the end of the recogniser.
                if (const auto tracker = weak.lock()) {
                    (tracker.get()->*handle)(touch);
                }
            }
        }));
}

void MirethGestureRecognizer::Tracker::touchBegan(const platform::Touch& touch) {
    touchesInProgress[touch.identity] = {touch.locationInWindow};
}

void MirethGestureRecognizer::Tracker::touchMoved(const platform::Touch& touch) {
    const auto points = touchesInProgress.find(touch.identity);
    // A second point says all: it was no tap. A finger may move for hours.
    if (points != touchesInProgress.end() && points->second.size() < 2) {
        points->second.push_back(touch.locationInWindow);
    }
}

void MirethGestureRecognizer::Tracker::touchEnded(const platform::Touch& touch) {
    const auto points = touchesInProgress.find(touch.identity);
    if (points == touchesInProgress.end()) {
        return;
    }
    const auto result = evaluate(points->second);
    // Before anybody hears of it: a subscriber may bring the next touch, or the end of this object.
    touchesInProgress.erase(points);
    if (result == GestureEvaluationResult::tap) {
        handleTap(touch);
    } else {
        recognizedGestureSubject.send(GestureEvent::undefined());
    }
}

void MirethGestureRecognizer::Tracker::touchCancelled(const platform::Touch& touch) {
    touchesInProgress.erase(touch.identity);
}

MirethGestureRecognizer::GestureEvaluationResult MirethGestureRecognizer::Tracker::evaluate(
    const std::vector<Point>& points) {
    // No tolerance: one move of any size makes it something else.
    return points.size() == 1 ? GestureEvaluationResult::tap : GestureEvaluationResult::other;
}

void MirethGestureRecognizer::Tracker::handleTap(const platform::Touch& touch) {
    const Point location = touch.locationInWindow;
    const auto touchData = [&] { return TouchData{location.x, location.y, milliseconds(touch.timestamp)}; };
    switch (touch.tapCount) {
        case 1:
            log.info(LogTag::gesture, "Single Tap.", {{"location", describe(location)}});
            recognizedGestureSubject.send(GestureEvent::tap(touchData(), touch.view));
            break;
        case 4:
            log.info(LogTag::gesture, "Quadruple Tap.", {{"location", describe(location)}});
            recognizedGestureSubject.send(GestureEvent::quadrupleTap(touchData(), touch.view));
            break;
        default:
            // The second and third taps of a run are not single ones, and only the fourth is a signal.
            break;
    }
}

}  // namespace mireth
