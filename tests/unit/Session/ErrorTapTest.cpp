// Errors that the host logs and taps before them, through the whole library.
#include <gmock/gmock.h>

#include "ErrorTaps.hpp"

namespace mireth {
namespace {

using test::ErrorTapSession;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(ErrorTapSession, AnErrorBeforeAnyTapYieldsNothing) {
    log();
    EXPECT_THAT(errorTaps(), IsEmpty());
}

TEST_F(ErrorTapSession, AnErrorSoonAfterATapIsOnTheTimelineWithTheTapsPlaceAndItsOwnTime) {
    tap();
    wait(100);
    log("no money");
    (void)host.stop();
    const auto& timeline = host.service.chunks.at(0).timeline;
    // After the start, the metadata, the window's dimensions and the tap.
    EXPECT_EQ(
        timeline[4].dump(),
        R"({"timestamp":1700000001100,"type":"SignalCaptured","eventDetails":{"signalId":"ErrorTap","target":)"
        R"({"xNormalizedTo1":0.5,"yNormalizedTo1":0.5,"xOriginalPx":585,"yOriginalPx":1266},)"
        R"("error":{"message":"no money"}},"chunkNumber":0})");
}

TEST_F(ErrorTapSession, ASecondErrorYieldsASecondOne) {
    tap();
    wait(100);
    log("one");
    wait(200);
    log("two");
    EXPECT_THAT(errorTaps(), ElementsAre("100 one 585", "300 two 585"));
}

TEST_F(ErrorTapSession, After499MillisecondsAnErrorPairsAndAfter500ItDoesNot) {
    tap();
    wait(499);
    log();
    wait(1);
    log();
    EXPECT_THAT(errorTaps(), ElementsAre("499 e 585"));
}

TEST_F(ErrorTapSession, WithoutAMessageItCarriesTheEmptyOne) {
    tap();
    host.core.logError(std::nullopt);
    EXPECT_THAT(errorTaps(), ElementsAre("0  585"));
}

TEST_F(ErrorTapSession, AfterAQuadrupleTapAnErrorPairsWithTheFirstTapWhileThatIsYoungEnough) {
    for (int count = 1; count <= 4; ++count) {
        tap({10.0 * count, 10}, count);
        wait(120);
    }
    log("480 after the first");
    wait(100);
    log("220 after the fourth");
    EXPECT_THAT(errorTaps(), ElementsAre("480 480 after the first 30"));
}

TEST_F(ErrorTapSession, AClockSetBackPairs) {
    tap();
    host.phone().clock().jump(std::chrono::hours(-1));
    wait(2000);
    log();
    EXPECT_THAT(errorTaps(), ElementsAre("-3598000 e 585"));
}

TEST_F(ErrorTapSession, AClockSetForwardDoesNotPair) {
    tap();
    host.phone().clock().jump(std::chrono::milliseconds(500));
    log();
    EXPECT_THAT(errorTaps(), IsEmpty());
}

TEST_F(ErrorTapSession, WhilePausedErrorsAreRefusedAndATapBelongsToNoErrorAfterIt) {
    tap({1, 1});
    (void)host.core.pauseRecording();
    tap();
    // What the listeners find while paused is refused by the detector.
    EXPECT_THAT(host.errors(), ElementsAre("Could not record event - event callback is nil"));
    log("while paused");
    EXPECT_THAT(host.errors(), ElementsAre(test::errorRefusal));
    (void)host.core.resumeRecording();
    log("after it");
    tap();
    log("of this one");
    EXPECT_THAT(errorTaps(), ElementsAre("0 of this one 585"));
}

TEST_F(ErrorTapSession, ATapBeforeAPausePairsAfterIt) {
    tap();
    (void)host.core.pauseRecording();
    (void)host.core.resumeRecording();
    log();
    EXPECT_THAT(errorTaps(), ElementsAre("0 e 585"));
}

TEST_F(ErrorTapSession, ATapOfTheSessionBeforeDoesNotPair) {
    tap();
    ASSERT_EQ(host.stop().kind, SessionCloseResult::Kind::success);
    ASSERT_EQ(host.start().kind, SessionStartResult::Kind::success);
    log();
    EXPECT_THAT(host.errors(), IsEmpty()) << "an error tap before the first frame would be one";
}

}  // namespace
}  // namespace mireth
