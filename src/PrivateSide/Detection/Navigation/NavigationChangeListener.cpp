#include "PrivateSide/Detection/Navigation/NavigationChangeListener.hpp"

namespace mireth {

NavigationChangeListener::NavigationChangeListener(const NavigationChangePublisher& navigationChangePublisher)
    : detectedEvent_(std::make_shared<LatestEvent<TimelineEvent>>()),
      navigationEventSubscription_(navigationChangePublisher.screenChangeEvent().sink(
          [detected = detectedEvent_](const std::optional<TimelineEvent>& event) { *detected = event; })) {}

}  // namespace mireth
