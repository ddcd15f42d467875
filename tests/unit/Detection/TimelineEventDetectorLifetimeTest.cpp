// What may go away, and when.
#include <stdexcept>

#include "DetectorHost.hpp"

namespace mireth {
namespace {

using test::infoLine;
using test::Seen;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

struct DetectorLifetime : test::DetectorHost {
    /// Calls `react` on the first line of `tag` with `text` in it.
    void onLine(LogTag tag, const std::string& text, std::function<void()> react) {
        capture.log().setAllowedTags({LogTag::gesture, LogTag::signal});
        capture.log().addLogListener([tag, text, react = std::move(react), done = false](
                                         LogTag seenTag, LogLevel, const std::string& line) mutable {
            if (!done && seenTag == tag && line.find(text) != std::string::npos) {
                done = true;
                react();
            }
        });
    }
};

TEST_F(DetectorLifetime, DroppedWhileAttachedTheWindowLosesTheRecogniser) {
    start();
    detector.reset();
    finger.tap({10, 20});
    queue->runAll();
    EXPECT_THAT(window->gestureRecognizers(), IsEmpty());
    EXPECT_THAT(seen, IsEmpty());
}

TEST_F(DetectorLifetime, DroppedBeforeItIsAttachedTheWindowLosesTheRecogniserToo) {
    capture.log().setAllowedTags({LogTag::gesture});
    detector->startDetection(remembering());
    detector.reset();
    queue->runAll();
    EXPECT_THAT(window->gestureRecognizers(), IsEmpty());
    capture.expectLines({infoLine(LogTag::gesture, "Gesture Recognisers Attached."),
                         infoLine(LogTag::gesture, "Gesture Recognisers Removed.")});
}

TEST_F(DetectorLifetime, DroppedAfterAStopOrWithoutAStartItPostsNothingMore) {
    start();
    detector->stopDetection();
    queue->runAll();
    detector.reset();
    EXPECT_FALSE(queue->runAll());
    detector = make(queue);
    detector.reset();
    EXPECT_FALSE(queue->runAll());
}

/// Takes work until it is closed.
class ClosableMainQueue final : public platform::MainQueue {
  public:
    explicit ClosableMainQueue(std::shared_ptr<platform::MainQueue> inner) : inner_(std::move(inner)) {}

    void post(Work work) override {
        if (isClosed) {
            throw std::runtime_error("the loop is closed");
        }
        inner_->post(std::move(work));
    }
    void postAfter(platform::Seconds delay, Work work) override { inner_->postAfter(delay, std::move(work)); }
    std::unique_ptr<platform::Timer> scheduleRepeating(platform::Seconds interval, Work tick) override {
        return inner_->scheduleRepeating(interval, std::move(tick));
    }
    bool isCurrent() const noexcept override { return inner_->isCurrent(); }

    bool isClosed = false;

  private:
    const std::shared_ptr<platform::MainQueue> inner_;
};

TEST_F(DetectorLifetime, AMainQueueThatTakesNoMoreWorkCostsItsEndALine) {
    const auto closable = std::make_shared<ClosableMainQueue>(queue);
    detector = make(closable);
    start();
    closable->isClosed = true;
    testing::internal::CaptureStderr();
    detector.reset();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "M-VEX: the main queue threw: the loop is closed\n");
}

TEST_F(DetectorLifetime, AWindowThatIsGoneIsNoError) {
    capture.log().setAllowedTags({LogTag::gesture});
    detector->startDetection(remembering());
    window.reset();
    queue->runAll();
    detector->stopDetection();
    queue->runAll();
    capture.expectLines({});
}

TEST_F(DetectorLifetime, TheWindowIsNotOwned) {
    start();
    const std::weak_ptr<platform::Window> watched = window;
    window.reset();
    EXPECT_TRUE(watched.expired());
}

TEST_F(DetectorLifetime, TheCallbackMayDropTheDetector) {
    detector->startDetection([this](const EventData& data) {
        remember(data);
        detector.reset();
    });
    queue->runAll();
    finger.tap({10, 20}, 1);
    finger.tap({10, 20}, 2);
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 1000, {10, 20}}));
    queue->runAll();
    EXPECT_THAT(window->gestureRecognizers(), IsEmpty());
}

TEST_F(DetectorLifetime, TheCallbackMayStopAndStartTheDetector) {
    detector->startDetection([this](const EventData& data) {
        remember(data);
        detector->stopDetection();
        detector->startDetection(remembering());
    });
    queue->runAll();
    finger.tap({10, 20}, 1);
    queue->runAll();
    EXPECT_THAT(window->gestureRecognizers(), SizeIs(1));
    finger.tap({10, 20}, 2);
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 1000, {10, 20}}, Seen{"Tap", 2000, {10, 20}}));
}

TEST_F(DetectorLifetime, ALogListenerMayDropTheDetectorOnAGesture) {
    start();
    onLine(LogTag::gesture, "Single Tap.", [this] { detector.reset(); });
    finger.tap({10, 20});
    EXPECT_THAT(seen, IsEmpty());
    (void)capture.take();
    queue->runAll();
    EXPECT_THAT(window->gestureRecognizers(), IsEmpty());
    (void)capture.take();
}

TEST_F(DetectorLifetime, ALogListenerMayDropTheDetectorOnARefusal) {
    start();
    detector->pauseDetection();
    onLine(LogTag::signal, "Could not record event", [this] { detector.reset(); });
    finger.tap({10, 20});
    EXPECT_EQ(detector, nullptr);
    (void)capture.take();
}

TEST_F(DetectorLifetime, ALogListenerMayDropTheDetectorWhenItIsAttached) {
    onLine(LogTag::gesture, "Gesture Recognisers Attached.", [this] { detector.reset(); });
    start();
    EXPECT_THAT(window->gestureRecognizers(), IsEmpty());
    (void)capture.take();
}

TEST_F(DetectorLifetime, ALogListenerMayStopTheDetectorWhenItIsAttached) {
    onLine(LogTag::gesture, "Gesture Recognisers Attached.", [this] { detector->stopDetection(); });
    start();
    EXPECT_THAT(window->gestureRecognizers(), IsEmpty());
    capture.expectLines({infoLine(LogTag::gesture, "Gesture Recognisers Attached."),
                         infoLine(LogTag::gesture, "Gesture Recognisers Removed.")});
}

TEST_F(DetectorLifetime, TheMemoryUseLinesNameWhatItOwns) {
    detector.reset();
    capture.log().setAllowedTags({LogTag::memoryUse});
    detector = make(queue);
    std::vector<std::string> lines;
    for (const auto& line : capture.take()) {
        lines.push_back(line.text);
    }
    for (const char* name : {"MirethGestureRecognizer", "ErrorTapSignalListener", "RageTapSignalListener",
                             "TapInteractionListener", "TimelineEventDetector"}) {
        EXPECT_THAT(lines, testing::Contains(std::string(name) + ": Succesfully initialized"));
    }
    capture.log().setAllowedTags({});
}

}  // namespace
}  // namespace mireth
