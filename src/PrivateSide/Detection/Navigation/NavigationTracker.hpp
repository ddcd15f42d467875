// Turns reported screen changes into timeline events.
#pragma once

#include <memory>
#include <vector>

#include "PrivateSide/Collection/Timeline/TimelineEvent.hpp"
#include "PrivateSide/Configuration/CurrentTimeProvider.hpp"
#include "PrivateSide/Detection/Navigation/NavigationChangePublisher.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Lives for one recording. Main thread.
class NavigationTracker {
  public:
    NavigationTracker(MirethLog& log, CurrentTimeProvider currentTimeProvider);

    void startTracking(std::shared_ptr<NavigationChangePublisher> publisher);
    void stopTracking();

    /// Publishes one screen-change event at the current time; nothing while not tracking.
    void record(std::vector<SrScreenHierarchyElement> screenHierarchy, SrScreenChangeType stateChangedTo,
                SrScreenChangeDetectionType detectionMethod);

  private:
    MirethLog& log_;
    const CurrentTimeProvider currentTimeProvider_;
    std::shared_ptr<NavigationChangePublisher> navigationChangePublisher_;
};

}  // namespace mireth
