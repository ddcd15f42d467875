#include "PrivateSide/Detection/Signals/SignalListeners/RageTapSignalListener.hpp"

namespace mireth {

namespace {

std::optional<RageTapSignalData> toRageTapSignalData(const GestureEvent& gesture) {
    const auto& touchData = gesture.getTouchData();
    return touchData ? std::optional(RageTapSignalData(touchData->eventTime, touchData->target()))
                     : std::nullopt;
}

}  // namespace

RageTapSignalListener::RageTapSignalListener(MirethLog& log,
                                             const MirethGestureRecognizer& mirethGestureRecognizer)
    : signalData_(std::make_shared<LatestEvent<RageTapSignalData>>()),
      // Shared with the subscription: what hears of the signal may drop this listener.
      recognizedGestureSubscription_(
          mirethGestureRecognizer.recognizedGestures()
              .filter([](const GestureEvent& gesture) { return gesture.isQuadrupleTap(); })
              .sink([published = signalData_](const GestureEvent& gesture) {
                  *published = toRageTapSignalData(gesture);
              })),
      memoryUse_(log, "PrivateSide/Detection/Signals/SignalListeners/RageTapSignalListener") {}

}  // namespace mireth
