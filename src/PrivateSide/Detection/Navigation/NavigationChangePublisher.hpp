// Publishes screen changes.
#pragma once

#include <optional>

#include "MirethVex/Base/Published.hpp"
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
    Published<std::optional<TimelineEvent>> screenChangeEvent_;
};

}  // namespace mireth
