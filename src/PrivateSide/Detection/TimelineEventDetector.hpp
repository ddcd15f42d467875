// Detects what the user does in the recorded window, and delivers it to the session recorder while a session
// runs and is not paused.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "MirethVex/Base/AnyCancellable.hpp"
#include "MirethVex/Base/AnyPublisher.hpp"
#include "MirethVex/Platform/MainQueue.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "PrivateSide/Collection/Timeline/EventData.hpp"
#include "PrivateSide/Configuration/CurrentTimeProvider.hpp"
#include "PrivateSide/Detection/Core/MirethGestureRecognizer.hpp"
#include "PrivateSide/Detection/Interactions/TapInteractionListener.hpp"
#include "PrivateSide/Detection/Navigation/NavigationChangeListener.hpp"
#include "PrivateSide/Detection/Signals/SignalListeners/DeadTapListener.hpp"
#include "PrivateSide/Detection/Signals/SignalListeners/ErrorTapSignalListener.hpp"
#include "PrivateSide/Detection/Signals/SignalListeners/RageTapSignalListener.hpp"
#include "PrivateSide/Detection/Signals/SignalPublishers/ErrorSignalPublisher.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"
#include "PrivateSide/Recording/DevicePerformanceEvaluator.hpp"

namespace mireth {

/// Main thread; may be dropped on any. A callback may start, stop, pause or drop the detector.
class TimelineEventDetector {
  public:
    using SessionEventCallback = std::function<void(const EventData&)>;

    /// What the detector and its listeners need of the phone; nothing in it is null.
    struct Environment {
        std::shared_ptr<platform::MainQueue> mainQueue;
        CurrentTimeProvider currentTimeProvider;
        DevicePerformanceEvaluator devicePerformanceEvaluator;
        ErrorSignalPublisher::TakeWaiting takeWaitingErrors = [] {};
    };

    /// `window` is not owned; one that goes away ends the touches and nothing else. Touches are watched only
    /// from `startDetection` on.
    TimelineEventDetector(MirethLog& log, const std::shared_ptr<platform::Window>& window,
                          std::unique_ptr<MirethGestureRecognizer> gestureRecognizer,
                          const Environment& environment);
    /// The window loses the recogniser, a turn of the main queue later.
    ~TimelineEventDetector();
    TimelineEventDetector(const TimelineEventDetector&) = delete;
    TimelineEventDetector& operator=(const TimelineEventDetector&) = delete;

    /// The callback gets whatever is found, each once, in the order in which it happened; nothing of what was
    /// tapped before.
    void startDetection(SessionEventCallback sessionEventCallback);
    /// Also ends what `observe` began.
    void stopDetection();
    /// While paused, what the listeners find is dropped with a log line; what was tapped then never comes.
    void pauseDetection() { setPaused(true); }
    void resumeDetection() { setPaused(false); }

    /// Passes an error that the host reported to the listeners.
    void recordLogError(const LogErrorData& error);

    /// Follows the screen changes of a recording, in place of those it followed before: each one that is
    /// published from now on comes out of `detectedEvent`.
    void observe(const NavigationChangePublisher& navigationChangePublisher);

    /// What was detected that is a timeline event already. A new subscriber first gets the last one, which
    /// may be a former recording's; nothing before the first.
    AnyPublisher<std::optional<TimelineEvent>> detectedEvent() const {
        return detectedEvent_->eraseToAnyPublisher();
    }

  private:
    /// Apart from the detector, so that a subscription can hold it while a callback drops the detector.
    struct Delivery {
        explicit Delivery(MirethLog& theLog) : log(theLog) {}
        void recordSessionEvent(const EventData& eventData);

        MirethLog& log;
        SessionEventCallback eventCallback;
        bool isPaused = false;
    };

    void setPaused(bool isPaused);
    template <class Data>
    void deliver(const AnyPublisher<std::optional<Data>>& published);
    void attachGestureRecoginzers();
    void removeGestureRecognizers();
    /// Calls `change` with the window later on the main queue, unless the window is gone then.
    void changeWindow(void (platform::Window::*change)(const std::shared_ptr<platform::GestureRecognizer>&),
                      const char* message);

    MirethLog& log_;
    const std::weak_ptr<platform::Window> window_;
    const std::shared_ptr<platform::MainQueue> mainQueue_;
    const std::unique_ptr<MirethGestureRecognizer> mirethGestureRecognizer_;
    ErrorSignalPublisher errorSignalPublisher_;
    // The signals listen before the interaction does: a tap that is being recorded may make the app report
    // an error, which has to find the tap.
    const ErrorTapSignalListener errorTapSignalListener_;
    const DeadTapListener deadTapListener_;
    const RageTapSignalListener rageTapSignalListener_;
    const TapInteractionListener tapInteractionListener_;
    const std::shared_ptr<Delivery> delivery_;
    std::vector<AnyCancellable> cancellables_;
    bool isAttached_ = false;
    const std::shared_ptr<LatestEvent<TimelineEvent>> detectedEvent_ =
        std::make_shared<LatestEvent<TimelineEvent>>();
    std::unique_ptr<NavigationChangeListener> navigationChangeListener_;
    AnyCancellable navigationChangeSubscription_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
