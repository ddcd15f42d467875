#include "PrivateSide/Detection/Navigation/NavigationTracker.hpp"

#include <utility>

namespace mireth {

NavigationTracker::NavigationTracker(MirethLog& log, CurrentTimeProvider currentTimeProvider)
    : log_(log), currentTimeProvider_(std::move(currentTimeProvider)) {}

void NavigationTracker::startTracking(std::shared_ptr<NavigationChangePublisher> publisher) {
    navigationChangePublisher_ = std::move(publisher);
}

void NavigationTracker::stopTracking() {
    navigationChangePublisher_.reset();
    log_.info(LogTag::navigation, "Stopped tracking Navigation.");
}

void NavigationTracker::record(std::vector<SrScreenHierarchyElement> screenHierarchy,
                               SrScreenChangeType stateChangedTo,
                               SrScreenChangeDetectionType detectionMethod) {
    // Held while publishing: a subscriber may stop the tracking.
    const auto publisher = navigationChangePublisher_;
    if (!publisher) {
        return;
    }
    ScreenChangeDetails details;
    details.changeType = stateChangedTo;
    details.detectionType = detectionMethod;
    details.screenHierarchy = std::move(screenHierarchy);
    publisher->notifyScreenChanged(
        {EventName::screenChange, currentTimeProvider_().toTimestampMillis(), std::move(details)});
}

}  // namespace mireth
