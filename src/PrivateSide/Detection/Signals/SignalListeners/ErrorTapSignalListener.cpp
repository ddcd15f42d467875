#include "PrivateSide/Detection/Signals/SignalListeners/ErrorTapSignalListener.hpp"

#include <cstdint>
#include <utility>

#include "Base/CheckedMath.hpp"
#include "Base/LatestEvent.hpp"

namespace mireth {

namespace {

bool wasTapped(const GestureEvent& gesture) {
    return gesture.isTap();
}

/// Signed, and bounded above only: after the wall clock was set back, an error may seem older than the tap
/// before it, and pairs with it all the same.
bool evaluateForErrorSignal(std::int64_t currentTimestamp, std::int64_t lastTouchTimestamp) {
    constexpr std::int64_t windowMillis = 500;
    return checkedSubtract(currentTimestamp, lastTouchTimestamp) < windowMillis;
}

}  // namespace

class ErrorTapSignalListener::Pairing {
  public:
    Pairing(CurrentTimeProvider currentTimeProvider, ErrorSignalPublisher::TakeWaiting takeWaitingErrors)
        : currentTimeProvider_(std::move(currentTimeProvider)),
          takeWaitingErrors_(std::move(takeWaitingErrors)) {}

    void handleGesture(const GestureEvent& gesture) {
        const auto& touchData = gesture.getTouchData();
        if (!wasTapped(gesture) || !touchData) {
            return;
        }
        // What was logged before this tap belongs to the one before it, on whichever thread that was.
        takeWaitingErrors_();
        if (isPaused_) {
            // Of what was touched in a pause nothing is told, also not by an error after it.
            forget();
            return;
        }
        // Errors carry the wall clock, a touch the uptime clock: only one clock can be compared with itself.
        lastDetectedTouch_ =
            TouchData{touchData->x, touchData->y, currentTimeProvider_().toTimestampMillis()};
    }

    void handleError(const LogErrorData& error) {
        if (!lastDetectedTouch_ ||
            !evaluateForErrorSignal(error.detectionTime, lastDetectedTouch_->eventTime)) {
            return;
        }
        signalData_ = std::optional(ErrorTapSignalData(error.detectionTime, lastDetectedTouch_->target(),
                                                       error.message.value_or("")));
    }

    void forget() noexcept { lastDetectedTouch_.reset(); }
    void setPaused(bool isPaused) noexcept { isPaused_ = isPaused; }

    AnyPublisher<std::optional<ErrorTapSignalData>> signalData() const {
        return signalData_.eraseToAnyPublisher();
    }

  private:
    const CurrentTimeProvider currentTimeProvider_;
    const ErrorSignalPublisher::TakeWaiting takeWaitingErrors_;
    LatestEvent<ErrorTapSignalData> signalData_;
    /// With the wall-clock time at which it was recognised as its time.
    std::optional<TouchData> lastDetectedTouch_;
    bool isPaused_ = false;
};

ErrorTapSignalListener::ErrorTapSignalListener(MirethLog& log,
                                               const MirethGestureRecognizer& mirethGestureRecognizer,
                                               const ErrorSignalPublisher& errorSignalPublisher,
                                               CurrentTimeProvider currentTimeProvider)
    : pairing_(std::make_shared<Pairing>(std::move(currentTimeProvider), errorSignalPublisher.takeWaiting())),
      recognizedGestureSubscription_(mirethGestureRecognizer.recognizedGestures().sink(
          [weak = std::weak_ptr(pairing_)](const GestureEvent& gesture) {
              if (const auto pairing = weak.lock()) {
                  pairing->handleGesture(gesture);
              }
          })),
      errorSignalSubscription_(events(errorSignalPublisher.logErrorData())
                                   .sink([weak = std::weak_ptr(pairing_)](const LogErrorData& error) {
                                       if (const auto pairing = weak.lock()) {
                                           pairing->handleError(error);
                                       }
                                   })),
      memoryUse_(log, "PrivateSide/Detection/Signals/SignalListeners/ErrorTapSignalListener") {}

void ErrorTapSignalListener::forget() const {
    pairing_->forget();
}

void ErrorTapSignalListener::setPaused(bool isPaused) const {
    pairing_->setPaused(isPaused);
}

AnyPublisher<std::optional<ErrorTapSignalData>> ErrorTapSignalListener::signalData() const {
    return pairing_->signalData();
}

}  // namespace mireth
