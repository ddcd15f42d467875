#include "platforms/qt/touch/Fingers.hpp"

#include <QGuiApplication>
#include <QStyleHints>
#include <cmath>
#include <utility>

namespace mireth::qt {

using platform::Touch;
using platform::TouchEvent;
using platform::TouchPhase;

namespace {

bool exceedsDragDistance(Point from, Point to) {
    const int distance = QGuiApplication::styleHints()->startDragDistance();
    return std::abs(to.x - from.x) + std::abs(to.y - from.y) > distance;
}

}  // namespace

void Fingers::begin(TouchEvent& event, Key key, Press press) {
    Finger finger;
    finger.touch.identity = ++lastIdentity_;
    finger.touch.phase = TouchPhase::began;
    finger.touch.locationInWindow = press.location;
    finger.touch.timestamp = event.timestamp;
    finger.touch.tapCount = counter().countOf(press.location, event.timestamp);
    // No view: those of the mirror last for one pass, and nobody asks a touch for its own.
    finger.touch.window = std::move(press.window);
    finger.device = press.device;
    finger.shownAtPress = std::move(press.shown);
    event.touches.push_back(finger.touch);
    fingers_.emplace(key, std::move(finger));
}

void Fingers::move(TouchEvent& event, Key key, Point location) {
    const auto found = fingers_.find(key);
    if (found == fingers_.end()) {
        return;
    }
    Finger& finger = found->second;
    if (!finger.hasMoved && !exceedsDragDistance(finger.touch.locationInWindow, location)) {
        return;
    }
    finger.hasMoved = true;
    finger.touch.phase = TouchPhase::moved;
    finger.touch.locationInWindow = location;
    finger.touch.timestamp = event.timestamp;
    event.touches.push_back(finger.touch);
}

std::shared_ptr<const Fingers::Views> Fingers::end(TouchEvent& event, Key key,
                                                   std::optional<Point> location) {
    const auto found = fingers_.find(key);
    if (found == fingers_.end()) {
        return nullptr;
    }
    if (location && !found->second.hasMoved) {
        // While the app drags something, Qt keeps the moves and hands on no more than the release.
        move(event, key, *location);
    }
    Finger finger = std::move(found->second);
    fingers_.erase(found);
    finger.touch.phase = TouchPhase::ended;
    finger.touch.timestamp = event.timestamp;
    if (finger.hasMoved && location) {
        finger.touch.locationInWindow = *location;
    }
    counter().touchEnded(finger.touch);
    event.touches.push_back(finger.touch);
    return std::move(finger.shownAtPress);
}

void Fingers::cancel(TouchEvent& event, Key key) {
    const auto found = fingers_.find(key);
    if (found == fingers_.end()) {
        return;
    }
    Touch touch = std::move(found->second.touch);
    fingers_.erase(found);
    touch.phase = TouchPhase::cancelled;
    touch.timestamp = event.timestamp;
    event.touches.push_back(std::move(touch));
}

void Fingers::cancelAllOf(TouchEvent& event, const QPointingDevice* device) {
    std::vector<Key> keys;
    for (const auto& [key, finger] : fingers_) {
        if (finger.device == device) {
            keys.push_back(key);
        }
    }
    for (const Key key : keys) {
        cancel(event, key);
    }
}

platform::TapCounter& Fingers::counter() {
    if (!counter_) {
        const auto* const hints = QGuiApplication::styleHints();
        counter_.emplace(hints->mouseDoubleClickInterval() / 1000.0, hints->startDragDistance());
    }
    return *counter_;
}

}  // namespace mireth::qt
