// Follows each touch of the recorded window and tells, when it ends, what it was.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "MirethVex/Base/AnyCancellable.hpp"
#include "MirethVex/Base/PassthroughSubject.hpp"
#include "PrivateSide/Detection/Core/GestureEvent.hpp"
#include "PrivateSide/Detection/Core/GestureRecognizerObserver.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Main thread. Taps are counted by the platform (`Touch::tapCount`), not here. Listens to its observer from
/// construction to destruction; whoever owns it attaches the observer to a window. A subscriber may drop it.
class MirethGestureRecognizer {
  public:
    MirethGestureRecognizer(MirethLog& log,
                            std::shared_ptr<GestureRecognizerObserver> gestureRecognizerObserver);
    MirethGestureRecognizer(const MirethGestureRecognizer&) = delete;
    MirethGestureRecognizer& operator=(const MirethGestureRecognizer&) = delete;

    AnyPublisher<GestureEvent> recognizedGestures() const {
        return tracker_->recognizedGestureSubject.eraseToAnyPublisher();
    }
    const std::shared_ptr<GestureRecognizerObserver>& gestureRecognizer() const noexcept {
        return gestureRecognizer_;
    }

  private:
    enum class GestureEvaluationResult { tap, other };

    /// Apart from the recogniser, so that a subscription can hold it while a subscriber drops the recogniser.
    struct Tracker {
        explicit Tracker(MirethLog& theLog) : log(theLog) {}
        void touchBegan(const platform::Touch& touch);
        void touchMoved(const platform::Touch& touch);
        void touchEnded(const platform::Touch& touch);
        void touchCancelled(const platform::Touch& touch);
        static GestureEvaluationResult evaluate(const std::vector<Point>& points);
        void handleTap(const platform::Touch& touch);

        MirethLog& log;
        PassthroughSubject<GestureEvent> recognizedGestureSubject;
        /// The first points seen of each touch that has begun and not ended, two at most, in window
        /// coordinates.
        std::map<std::uint64_t, std::vector<Point>> touchesInProgress;
    };

    void subscribe(const AnyPublisher<GestureRecognizerObserver::Gesture>& stream,
                   void (Tracker::*handle)(const platform::Touch&));

    const std::shared_ptr<GestureRecognizerObserver> gestureRecognizer_;
    const std::shared_ptr<Tracker> tracker_;
    std::vector<AnyCancellable> cancellables_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
