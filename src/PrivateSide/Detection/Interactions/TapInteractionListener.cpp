#include "PrivateSide/Detection/Interactions/TapInteractionListener.hpp"

namespace mireth {

namespace {

std::optional<TapInteractionData> toTapInteractionData(const GestureEvent& gesture) {
    const auto& touchData = gesture.getTouchData();
    return touchData ? std::optional(TapInteractionData(touchData->eventTime, touchData->target()))
                     : std::nullopt;
}

}  // namespace

TapInteractionListener::TapInteractionListener(MirethLog& log,
                                               const MirethGestureRecognizer& mirethGestureRecognizer)
    : interactionData_(std::make_shared<LatestEvent<TapInteractionData>>()),
      // Shared with the subscription: what hears of the tap may drop this listener.
      recognizedGestureSubscription_(mirethGestureRecognizer.recognizedGestures()
                                         .filter([](const GestureEvent& gesture) { return gesture.isTap(); })
                                         .sink([published = interactionData_](const GestureEvent& gesture) {
                                             *published = toTapInteractionData(gesture);
                                         })),
      memoryUse_(log, "PrivateSide/Detection/Interactions/TapInteractionListener") {}

}  // namespace mireth
