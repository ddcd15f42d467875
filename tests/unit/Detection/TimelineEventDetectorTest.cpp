#include "PrivateSide/Detection/TimelineEventDetector.hpp"

#include <gmock/gmock.h>

#include "support/LogCapture.hpp"
#include "support/ManualMainQueue.hpp"

namespace mireth {
namespace {

using platform::Touch;
using platform::TouchEvent;
using platform::TouchPhase;
using test::errorLine;
using test::infoLine;
using testing::ElementsAre;
using testing::IsEmpty;

const auto refusal = errorLine(LogTag::signal, "Could not record event - event callback is nil");

/// What the tests compare of an event: its kind's key, its time and its point.
struct Seen {
    std::string key;
    std::int64_t timestamp;
    Target target;
    bool operator==(const Seen&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Seen& seen) {
    return out << seen.key << " at " << seen.timestamp << " (" << seen.target.x << ", " << seen.target.y
               << ")";
}

struct Detector : testing::Test {
    test::LogCapture capture{{LogTag::signal}};
    std::shared_ptr<test::ManualMainQueue> queue = std::make_shared<test::ManualMainQueue>();
    std::shared_ptr<platform::Window> window = std::make_shared<platform::Window>(Size{390, 844});
    std::shared_ptr<TimelineEventDetector> detector = make();
    std::vector<Seen> seen;
    std::uint64_t lastIdentity = 0;

    std::shared_ptr<TimelineEventDetector> make() {
        return std::make_shared<TimelineEventDetector>(
            capture.log(), window,
            std::make_unique<MirethGestureRecognizer>(capture.log(),
                                                      std::make_shared<GestureRecognizerObserver>()),
            TimelineEventDetector::Environment{queue, [] { return Date(1); }, DevicePerformanceEvaluator(0)});
    }

    TimelineEventDetector::SessionEventCallback remember() {
        return [this](const EventData& data) {
            const auto* signal = dynamic_cast<const SessionSignalData*>(&data);
            const auto* interaction = dynamic_cast<const SessionInteractionData*>(&data);
            ASSERT_TRUE(signal != nullptr || interaction != nullptr);
            seen.push_back({std::string(key(data.type())), data.timestamp(),
                            signal != nullptr ? signal->target() : interaction->target()});
        };
    }

    void start() {
        detector->startDetection(remember());
        queue->runAll();
    }

    void touch(Point point, int tapCount, double seconds) {
        Touch touch;
        touch.identity = ++lastIdentity;
        touch.locationInWindow = point;
        touch.tapCount = tapCount;
        touch.window = window;
        for (const TouchPhase phase : {TouchPhase::began, TouchPhase::ended}) {
            touch.phase = phase;
            touch.timestamp = seconds;
            window->sendEvent({seconds, {touch}});
        }
    }

    void fourQuickTaps() {
        for (int tap = 1; tap <= 4; ++tap) {
            touch({10, 20}, tap, tap);
        }
    }
};

TEST_F(Detector, FourQuickTapsYieldOneTapAndOneRageTap) {
    start();
    fourQuickTaps();
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 1000, {10, 20}}, Seen{"RageTap", 4000, {10, 20}}));
}

TEST_F(Detector, WhilePausedEachEventIsRefusedWithALine) {
    start();
    detector->pauseDetection();
    fourQuickTaps();
    EXPECT_THAT(seen, IsEmpty());
    capture.expectLines({refusal, refusal});
    detector->resumeDetection();
    fourQuickTaps();
    EXPECT_EQ(seen.size(), 2U);
}

TEST_F(Detector, TheRecogniserIsAttachedAndRemovedOnTheMainQueueOnly) {
    EXPECT_THAT(window->gestureRecognizers(), IsEmpty());
    capture.log().setAllowedTags({LogTag::gesture});
    detector->startDetection(remember());
    EXPECT_THAT(window->gestureRecognizers(), IsEmpty());
    queue->runAll();
    EXPECT_EQ(window->gestureRecognizers().size(), 1U);
    capture.expectLines({infoLine(LogTag::gesture, "Gesture Recognisers Attached.")});
    detector->stopDetection();
    EXPECT_EQ(window->gestureRecognizers().size(), 1U);
    capture.expectLines({});
    queue->runAll();
    EXPECT_THAT(window->gestureRecognizers(), IsEmpty());
    capture.expectLines({infoLine(LogTag::gesture, "Gesture Recognisers Removed.")});
}

TEST_F(Detector, DroppedWhileAttachedTheWindowLosesTheRecogniser) {
    start();
    detector.reset();
    queue->runAll();
    EXPECT_THAT(window->gestureRecognizers(), IsEmpty());
}

}  // namespace
}  // namespace mireth
