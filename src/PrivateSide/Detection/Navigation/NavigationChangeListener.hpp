// Hears the screen changes of one recording for the timeline event detector.
#pragma once

#include <memory>
#include <optional>

#include "PrivateSide/Detection/Navigation/NavigationChangePublisher.hpp"

namespace mireth {

/// Main thread. Listens from construction to destruction, and may be destroyed while a change is published.
class NavigationChangeListener {
  public:
    explicit NavigationChangeListener(const NavigationChangePublisher& navigationChangePublisher);

    /// Every value of the publisher, its current one first; nothing before the first change.
    AnyPublisher<std::optional<TimelineEvent>> detectedEvent() const {
        return detectedEvent_->eraseToAnyPublisher();
    }

  private:
    const std::shared_ptr<LatestEvent<TimelineEvent>> detectedEvent_;
    const AnyCancellable navigationEventSubscription_;
};

}  // namespace mireth
