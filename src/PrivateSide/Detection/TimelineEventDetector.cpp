#include "PrivateSide/Detection/TimelineEventDetector.hpp"

#include <utility>

#include "Base/GuardedRun.hpp"

namespace mireth {

TimelineEventDetector::TimelineEventDetector(MirethLog& log, const std::shared_ptr<platform::Window>& window,
                                             std::unique_ptr<MirethGestureRecognizer> gestureRecognizer,
                                             const Environment& environment)
    : log_(log),
      window_(window),
      mainQueue_(environment.mainQueue),
      mirethGestureRecognizer_(std::move(gestureRecognizer)),
      errorSignalPublisher_(environment.takeWaitingErrors),
      errorTapSignalListener_(log, *mirethGestureRecognizer_, errorSignalPublisher_,
                              environment.currentTimeProvider),
      deadTapListener_(
          log, *mirethGestureRecognizer_,
          std::make_shared<ViewAnalyzer>(log, ViewContentComparator(window), LayerComparator(window),
                                         environment.mainQueue, environment.devicePerformanceEvaluator)),
      rageTapSignalListener_(log, *mirethGestureRecognizer_),
      tapInteractionListener_(log, *mirethGestureRecognizer_),
      delivery_(std::make_shared<Delivery>(log)),
      memoryUse_(log, "PrivateSide/Detection/TimelineEventDetector") {
    deliver(errorTapSignalListener_.signalData());
    deliver(deadTapListener_.signalData());
    deliver(rageTapSignalListener_.signalData());
    deliver(tapInteractionListener_.interactionData());
}

TimelineEventDetector::~TimelineEventDetector() {
    if (isAttached_) {
        runGuarded("the main queue", [this] { removeGestureRecognizers(); });
    }
}

void TimelineEventDetector::startDetection(SessionEventCallback sessionEventCallback) {
    errorTapSignalListener_.forget();
    deadTapListener_.forget();
    delivery_->eventCallback = std::move(sessionEventCallback);
    attachGestureRecoginzers();
}

void TimelineEventDetector::stopDetection() {
    removeGestureRecognizers();
    delivery_->eventCallback = nullptr;
    navigationChangeSubscription_.cancel();
    navigationChangeListener_.reset();
}

void TimelineEventDetector::setPaused(bool isPaused) {
    delivery_->isPaused = isPaused;
    errorTapSignalListener_.setPaused(isPaused);
    deadTapListener_.setPaused(isPaused);
}

void TimelineEventDetector::observe(const NavigationChangePublisher& navigationChangePublisher) {
    navigationChangeListener_ = std::make_unique<NavigationChangeListener>(navigationChangePublisher);
    navigationChangeSubscription_ =
        events(navigationChangeListener_->detectedEvent())
            .sink([detected = detectedEvent_](const TimelineEvent& event) { *detected = event; });
}

void TimelineEventDetector::recordLogError(const LogErrorData& error) {
    errorSignalPublisher_.notifyLogError(error);
}

void TimelineEventDetector::Delivery::recordSessionEvent(const EventData& eventData) {
    if (isPaused || !eventCallback) {
        log.error(LogTag::signal, "Could not record event - event callback is nil");
        return;
    }
    // Copied: the callback may stop the detection.
    const auto callback = eventCallback;
    callback(eventData);
}

template <class Data>
void TimelineEventDetector::deliver(const AnyPublisher<std::optional<Data>>& published) {
    cancellables_.push_back(events(published).sink([weak = std::weak_ptr(delivery_)](const Data& data) {
        if (const auto delivery = weak.lock()) {
            delivery->recordSessionEvent(data);
        }
    }));
}

void TimelineEventDetector::attachGestureRecoginzers() {
    isAttached_ = true;
    changeWindow(&platform::Window::addGestureRecognizer, "Gesture Recognisers Attached.");
}

void TimelineEventDetector::removeGestureRecognizers() {
    isAttached_ = false;
    changeWindow(&platform::Window::removeGestureRecognizer, "Gesture Recognisers Removed.");
}

void TimelineEventDetector::changeWindow(
    void (platform::Window::*change)(const std::shared_ptr<platform::GestureRecognizer>&),
    const char* message) {
    // Holds the recogniser, not the detector: a removal has to come also when the detector is gone by then.
    mainQueue_->post([&log = log_, weakWindow = window_, change, message,
                      recognizer = mirethGestureRecognizer_->gestureRecognizer()] {
        if (const auto window = weakWindow.lock()) {
            (window.get()->*change)(recognizer);
            log.info(LogTag::gesture, message);
        }
    });
}

}  // namespace mireth
