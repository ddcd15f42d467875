// Dead taps on their way through the detector, on a slow device.
#include "DetectorHost.hpp"

namespace mireth {
namespace {

using platform::Seconds;
using test::errorLine;
using test::Seen;
using testing::ElementsAre;
using testing::SizeIs;

using DetectorDeadTap = test::DetectorHost;

TEST_F(DetectorDeadTap, HasTheTapsTimeAndComesWhenTheWaitIsOver) {
    start();
    finger.tap({10, 20}, 7);
    queue->advance(Seconds(1.875));
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 7000, {10, 20}}));
    queue->advance(Seconds(0.125));
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 7000, {10, 20}}, Seen{"DeadTap", 7000, {10, 20}}));
}

TEST_F(DetectorDeadTap, DoesNotComeWhenTheWindowAnswers) {
    start();
    finger.tap({10, 20}, 7);
    window->addSubview(std::make_shared<platform::View>());
    queue->advance(Seconds(2));
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 7000, {10, 20}}));
}

TEST_F(DetectorDeadTap, OfARunIsItsFirstTap) {
    start();
    fourQuickTaps();
    queue->advance(Seconds(2));
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 1000, {10, 20}}, Seen{"RageTap", 4000, {10, 20}},
                                  Seen{"DeadTap", 1000, {10, 20}}));
}

TEST_F(DetectorDeadTap, FoundWhilePausedOrStoppedIsRefused) {
    const auto refusal = errorLine(LogTag::signal, "Could not record event - event callback is nil");
    start();
    finger.tap({10, 20}, 7);
    detector->pauseDetection();
    queue->advance(Seconds(2));
    capture.expectLines({refusal});
    detector->resumeDetection();
    finger.tap({10, 20}, 9);
    detector->stopDetection();
    queue->advance(Seconds(2));
    capture.expectLines({refusal});
    EXPECT_THAT(seen, SizeIs(2)) << "the two taps";
}

TEST_F(DetectorDeadTap, OfATapInAPauseNeverComes) {
    start();
    detector->pauseDetection();
    finger.tap({10, 20}, 7);
    detector->resumeDetection();
    capture.expectLines({errorLine(LogTag::signal, "Could not record event - event callback is nil")});
    queue->advance(Seconds(2));
    EXPECT_THAT(seen, ElementsAre()) << "and costs no second line";
}

TEST_F(DetectorDeadTap, OfATapBeforeAPauseComesAfterIt) {
    start();
    finger.tap({10, 20}, 7);
    detector->pauseDetection();
    detector->resumeDetection();
    queue->advance(Seconds(2));
    EXPECT_THAT(seen, ElementsAre(Seen{"Tap", 7000, {10, 20}}, Seen{"DeadTap", 7000, {10, 20}}));
}

TEST_F(DetectorDeadTap, ThatIsWaitedForWhenTheDetectorIsDroppedIsLogged) {
    start();
    finger.tap({10, 20}, 7);
    finger.tap({10, 20}, 8);
    detector.reset();
    queue->advance(Seconds(2));
    const auto line =
        errorLine(LogTag::signal, "Error during analysis: ViewAnalyzer was deallocated before completion.");
    capture.expectLines({line, line});
    EXPECT_THAT(seen, SizeIs(2)) << "the two taps";
}

}  // namespace
}  // namespace mireth
