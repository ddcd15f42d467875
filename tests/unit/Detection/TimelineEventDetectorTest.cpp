#include "PrivateSide/Detection/TimelineEventDetector.hpp"

#include "DetectorHost.hpp"

namespace mireth {
namespace {

using test::errorLine;
using test::infoLine;
using test::Seen;
using testing::ElementsAre;
using testing::IsEmpty;

using Detector = test::DetectorHost;

const auto refusal = errorLine(LogTag::signal, "Could not record event - event callback is nil");

/// Counts what would be posted.
struct Poster final : RemoteLogPoster {
    void post(LogLevel level, LogTag tag, const std::string& message, const AdditionalInfo& additionalInfo,
              bool ignoreSampling) override {
        EXPECT_EQ(level, LogLevel::error);
        EXPECT_EQ(tag, LogTag::signal);
        EXPECT_EQ(message, refusal.text);
        EXPECT_TRUE(additionalInfo.empty());
        EXPECT_FALSE(ignoreSampling);
        ++posts;
    }
    int posts = 0;
};

TEST_F(Detector, FourQuickTapsAreOneTapAndOneRageTap) {
    start();
    fourQuickTaps();
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 1000, {10, 20}}, Seen{"RageTap", 4000, {10, 20}}));
}

TEST_F(Detector, AFifthTapIsNothing) {
    start();
    finger.tap({10, 20}, 1, 5);
    EXPECT_THAT(seen, IsEmpty());
}

TEST_F(Detector, ATouchThatMovesOrIsCancelledIsNothing) {
    start();
    finger.begin({10, 20});
    finger.moveTo({10, 21});
    finger.end();
    finger.begin({10, 20});
    finger.cancel();
    EXPECT_THAT(seen, IsEmpty());
}

TEST_F(Detector, AnErrorAfterATapIsAnErrorTapAfterIt) {
    start();
    finger.tap({10, 20}, 7);
    detector->recordLogError({1100, "e"});
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 7000, {10, 20}}, Seen{"ErrorTap", 1100, {10, 20}}));
}

TEST_F(Detector, AnErrorReportedWhileTheTapIsDeliveredFindsTheTap) {
    detector->startDetection([this](const EventData& data) {
        remember(data);
        if (data.type() == EventType(SessionInteractionType::tap)) {
            detector->recordLogError({1000, "e"});
        }
    });
    queue->runAll();
    finger.tap({10, 20}, 7);
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 7000, {10, 20}}, Seen{"ErrorTap", 1000, {10, 20}}));
}

TEST_F(Detector, ATouchSentWhileAnotherIsDeliveredComesAfterIt) {
    test::Finger other(window, 2);
    detector->startDetection([&](const EventData& data) {
        if (data.timestamp() == 1000) {
            other.tap({30, 40}, 2);
        }
        remember(data);
    });
    queue->runAll();
    finger.tap({10, 20}, 1);
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 1000, {10, 20}}, Seen{"Tap", 2000, {30, 40}}));
}

TEST_F(Detector, WhilePausedEachEventIsRefusedWithALineThatIsPosted) {
    const auto poster = std::make_shared<Poster>();
    capture.log().setRemotePoster(poster);
    start();
    detector->pauseDetection();
    fourQuickTaps();
    EXPECT_THAT(seen, IsEmpty());
    capture.expectLines({refusal, refusal});
    EXPECT_EQ(poster->posts, 2);
}

TEST_F(Detector, WhilePausedTouchesAreStillClassified) {
    start();
    detector->pauseDetection();
    finger.begin({10, 20}, 1);
    detector->resumeDetection();
    finger.end();
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 1000, {10, 20}}));
}

TEST_F(Detector, WhatWasRefusedInAPauseIsNotMadeUpFor) {
    start();
    detector->pauseDetection();
    finger.tap({10, 20}, 1);
    capture.expectLines({refusal});
    detector->resumeDetection();
    EXPECT_THAT(seen, IsEmpty());
    finger.tap({10, 20}, 2);
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 2000, {10, 20}}));
}

TEST_F(Detector, AnEventBeforeTheStartIsRefusedWithALineThatIsPosted) {
    // Without a start nothing is attached, but an error that pairs with no touch of the session cannot come
    // either: the recogniser is put into the window by hand.
    auto observer = std::make_shared<GestureRecognizerObserver>();
    const TimelineEventDetector neverStarted(
        capture.log(), window, std::make_unique<MirethGestureRecognizer>(capture.log(), observer),
        {queue, [] { return Date(1); }, DevicePerformanceEvaluator(0)});
    const auto poster = std::make_shared<Poster>();
    capture.log().setRemotePoster(poster);
    window->addGestureRecognizer(observer);
    finger.tap({10, 20});
    capture.expectLines({refusal});
    EXPECT_EQ(poster->posts, 1);
}

TEST_F(Detector, AnEventAfterTheStopIsRefusedWithALine) {
    start();
    detector->stopDetection();
    // The recogniser is still attached: it leaves with the next turn of the main queue.
    finger.tap({10, 20});
    EXPECT_THAT(seen, IsEmpty());
    capture.expectLines({refusal});
    queue->runAll();
    finger.tap({10, 20});
    capture.expectLines({});
}

TEST_F(Detector, TheLastCallbackCounts) {
    start();
    int others = 0;
    detector->startDetection([&](const EventData&) { ++others; });
    queue->runAll();
    finger.tap({10, 20});
    EXPECT_THAT(seen, IsEmpty());
    EXPECT_EQ(others, 1);
}

TEST_F(Detector, AttachingAndRemovingWaitForTheMainQueueAndAreLogged) {
    capture.log().setAllowedTags({LogTag::gesture});
    EXPECT_FALSE(queue->runAll());
    EXPECT_THAT(window->gestureRecognizers(), IsEmpty());
    detector->startDetection(remembering());
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

TEST_F(Detector, StartAndStopInQuickSuccessionComeInOrderOnceEach) {
    capture.log().setAllowedTags({LogTag::gesture});
    const auto attached = infoLine(LogTag::gesture, "Gesture Recognisers Attached.");
    const auto removed = infoLine(LogTag::gesture, "Gesture Recognisers Removed.");
    detector->startDetection(remembering());
    detector->stopDetection();
    queue->runAll();
    EXPECT_THAT(window->gestureRecognizers(), IsEmpty());
    capture.expectLines({attached, removed});
    detector->startDetection(remembering());
    detector->stopDetection();
    detector->startDetection(remembering());
    queue->runAll();
    EXPECT_EQ(window->gestureRecognizers().size(), 1U);
    capture.expectLines({attached, removed, attached});
    capture.log().setAllowedTags({});
}

TEST_F(Detector, EachEventComesOnceAfterARestart) {
    start();
    detector->stopDetection();
    start();
    finger.tap({10, 20}, 1);
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 1000, {10, 20}}));
}

TEST_F(Detector, WhatWasPublishedBeforeTheStartIsNotDelivered) {
    start();
    finger.tap({10, 20}, 1);
    detector->stopDetection();
    queue->runAll();
    seen.clear();
    start();
    EXPECT_THAT(seen, IsEmpty());
}

}  // namespace
}  // namespace mireth
