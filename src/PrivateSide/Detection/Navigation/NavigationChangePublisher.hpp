// Publishes screen changes.
#pragma once

#include <optional>

#include "Base/LatestEvent.hpp"
#include "PrivateSide/Collection/Timeline/TimelineEvent.hpp"

namespace mireth {

/// Main thread.
class NavigationChangePublisher {
  public:
    AnyPublisher<std::optional<TimelineEvent>> screenChangeEvent() const {
        return screenChangeEvent_.eraseToAnyPublisher();
    }
    void notifyScreenChanged(TimelineEvent event) { screenChangeEvent_ = std::optional(std::move(event)); }

  private:
    LatestEvent<TimelineEvent> screenChangeEvent_;
};

}  // namespace mireth
