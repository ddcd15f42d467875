// Screens on their way from the app's controllers and the host's reports to the timeline, through the public
// interface.
#include "ScreenChanges.hpp"

#include <gmock/gmock.h>

namespace mireth {
namespace {

using test::errorLine;
using test::infoLine;
using test::LogLine;
using test::notStartedLine;
using test::ScreenChanges;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

// Automatic detection.

TEST_F(ScreenChanges, AScreenThatAppearsAndDisappearsIsInTheTimelineOnceEachWithItsClassAndItsTime) {
    start(true);
    host.advance(1.25);
    const auto cart = controller("CartViewController");
    appear(cart);
    host.advance(1);
    disappear(cart);
    host.advance(8);
    const auto& timeline = host.service.chunks.at(0).timeline;
    ASSERT_EQ(timeline.size(), 6U);
    EXPECT_EQ(timeline[3].dump(),
              R"({"timestamp":1700000001250,"type":"ScreenChange","eventDetails":{"changeType":"appear",)"
              R"("detectionType":"auto","screenHierarchy":[{"depth":0,"screenName":"CartViewController",)"
              R"("screenType":"Screen"}]},"chunkNumber":0})");
    EXPECT_EQ(timeline[4].dump(),
              R"({"timestamp":1700000002250,"type":"ScreenChange","eventDetails":{"changeType":"disappear",)"
              R"("detectionType":"auto","screenHierarchy":[{"depth":0,"screenName":"CartViewController",)"
              R"("screenType":"Screen"}]},"chunkNumber":0})");
    EXPECT_THAT(heard, ElementsAre("CartViewController appeared", "CartViewController disappeared"));
}

TEST_F(ScreenChanges, WithoutAutomaticTrackingControllersHearAndNothingIsReported) {
    start(false);
    appear(controller("Cart"));
    EXPECT_THAT(host.capture.take(), IsEmpty());
    host.advance(10);
    EXPECT_THAT(uploaded(), IsEmpty());
    EXPECT_THAT(heard, ElementsAre("Cart appeared"));
}

TEST_F(ScreenChanges, AfterTheStopControllersHearAndNothingIsReported) {
    start(true);
    ASSERT_EQ(stop().kind, SessionCloseResult::Kind::success);
    EXPECT_THAT(host.capture.take(),
                ElementsAre(infoLine(LogTag::navigation, "Automatic screen change detection is OFF."),
                            infoLine(LogTag::navigation, "Stopped tracking Navigation.")));
    appear(controller("Cart"));
    EXPECT_THAT(host.capture.take(), IsEmpty());
    EXPECT_THAT(heard, ElementsAre("Cart appeared"));
}

TEST_F(ScreenChanges, AfterTheBackgroundControllersHearAndNothingIsReported) {
    start(true);
    host.phone().application().moveToBackground();
    host.advance(0.1);
    EXPECT_THAT(host.capture.take(),
                Contains(infoLine(LogTag::navigation, "Automatic screen change detection is OFF.")));
    appear(controller("Cart"));
    EXPECT_THAT(host.capture.take(), IsEmpty());
    EXPECT_THAT(heard, ElementsAre("Cart appeared"));
}

TEST_F(ScreenChanges, AfterARefusedUploadControllersHearAndNothingIsReported) {
    host.service.record = [](const auto&) { return test::IngestionFake::ok(R"({"status":"ERROR"})"); };
    start(true);
    host.advance(10.2);
    EXPECT_THAT(host.capture.take(),
                Contains(infoLine(LogTag::navigation, "Automatic screen change detection is OFF.")));
    appear(controller("Cart"));
    EXPECT_THAT(host.capture.take(), IsEmpty());
    EXPECT_THAT(heard, ElementsAre("Cart appeared"));
}

TEST_F(ScreenChanges, WhileTheSessionStartsAScreenIsRefused) {
    ASSERT_EQ(library.initializeProject("b1", "p1", host.window), InitializationResult::success);
    const auto starting = library.startRecording(VexConfiguration(false, true));
    (void)host.capture.take();
    appear(controller("Cart"));
    host.capture.expectLines({errorLine(LogTag::signal, notStartedLine)});
    EXPECT_THAT(heard, ElementsAre("Cart appeared"));
    (void)host.await(starting);
}

TEST_F(ScreenChanges, AfterAStartThatFailedAScreenIsRefused) {
    host.service.enablement = "SR_DISABLED";
    ASSERT_EQ(library.initializeProject("b1", "p1", host.window), InitializationResult::success);
    ASSERT_NE(host.await(library.startRecording(VexConfiguration(false, true))).kind,
              SessionStartResult::Kind::success);
    (void)host.capture.take();
    appear(controller("Cart"));
    host.capture.expectLines({errorLine(LogTag::signal, notStartedLine)});
}

TEST_F(ScreenChanges, ASessionWithoutThemReportsNoneAfterAStartWithThemThatFailed) {
    host.service.enablement = "SR_DISABLED";
    ASSERT_EQ(library.initializeProject("b1", "p1", host.window), InitializationResult::success);
    ASSERT_NE(host.await(library.startRecording(VexConfiguration(false, true))).kind,
              SessionStartResult::Kind::success);
    host.service.enablement = "SR_ENABLED_FOR_MOBILE_ONLY";
    startAgain(false);
    appear(controller("Cart"));
    host.capture.expectLines({});
    host.advance(10);
    EXPECT_THAT(uploaded(), IsEmpty());
}

TEST_F(ScreenChanges, ASessionWithoutThemReportsNoneAfterAResetInOneWithThem) {
    start(true);
    library.reset();
    start(false);
    appear(controller("Cart"));
    host.capture.expectLines({});
    host.advance(10);
    EXPECT_THAT(uploaded(), IsEmpty());
}

TEST_F(ScreenChanges, WhilePausedAScreenIsRefusedAndItsHandlerRuns) {
    start(true);
    ASSERT_EQ(library.pauseRecording(), SessionPauseResult::success);
    appear(controller("Cart"));
    disappear(controller("Cart"));
    const LogLine refused = errorLine(LogTag::signal, notStartedLine);
    host.capture.expectLines({refused, refused});
    EXPECT_THAT(heard, ElementsAre("Cart appeared", "Cart disappeared"));
    ASSERT_EQ(library.resumeRecording(), SessionResumeResult::success);
    appear(controller("Pay"));
    host.advance(10);
    EXPECT_THAT(uploaded(), ElementsAre("appear auto Pay"));
}

TEST_F(ScreenChanges, AfterAResetAScreenIsRefusedAsNotInitialized) {
    start(true);
    library.reset();
    appear(controller("Cart"));
    host.capture.expectLines({errorLine(LogTag::signal, "Can't record screen change. Not initialized.")});
    EXPECT_THAT(heard, ElementsAre("Cart appeared"));
}

TEST_F(ScreenChanges, ASecondSessionDoublesNothingAndRepeatsNothingOfTheFirst) {
    start(true);
    appear(controller("First"));
    host.advance(1);
    ASSERT_EQ(stop().kind, SessionCloseResult::Kind::success);
    EXPECT_THAT(uploaded(), ElementsAre("appear auto First"));
    startAgain(true);
    appear(controller("Second"));
    host.advance(10);
    EXPECT_THAT(uploaded(), ElementsAre("appear auto First", "appear auto Second"));
}

TEST_F(ScreenChanges, AProjectThatIsInitializedAgainSwitchesTheSameInterception) {
    start(true);
    ASSERT_EQ(stop().kind, SessionCloseResult::Kind::success);
    start(true);
    appear(controller("Cart"));
    host.advance(10);
    EXPECT_THAT(uploaded(), ElementsAre("appear auto Cart"));
    ASSERT_EQ(stop().kind, SessionCloseResult::Kind::success);
    start(false);
    appear(controller("Pay"));
    EXPECT_THAT(host.capture.take(), IsEmpty());
}

TEST_F(ScreenChanges, AFirstSessionWithoutAutomaticTrackingDoesNotKeepASecondFromIt) {
    start(false);
    ASSERT_EQ(stop().kind, SessionCloseResult::Kind::success);
    startAgain(true);
    appear(controller("Cart"));
    host.advance(10);
    EXPECT_THAT(uploaded(), ElementsAre("appear auto Cart"));
}

TEST_F(ScreenChanges, TheControllersOfALibraryThatIsGoneAreAsTheyWere) {
    {
        MirethSR brief =
            MirethSRAccess::make(std::make_unique<MirethSRCore>(host.capture.log(), host.phone().services()));
        ASSERT_EQ(brief.initializeProject("b1", "p1", host.window), InitializationResult::success);
        (void)host.await(brief.startRecording(VexConfiguration(false, true)));
    }
    (void)host.capture.take();
    appear(controller("Cart"));
    EXPECT_THAT(host.capture.take(), IsEmpty());
    EXPECT_THAT(heard, ElementsAre("Cart appeared"));
}

// Manual reports.

TEST_F(ScreenChanges, AHierarchyOfTwoHasTheDepthsZeroAndOne) {
    start(false);
    library.reportScreenChange({{"Main"}, {"Cart", "Dialog"}}, ScreenChangeType::appear,
                               ScreenDetectionType::manual);
    host.advance(10);
    EXPECT_EQ(host.service.chunks.at(0).timeline.at(2)["eventDetails"].dump(),
              R"({"changeType":"appear","detectionType":"manual","screenHierarchy":[)"
              R"({"depth":0,"screenName":"Main","screenType":"Screen"},)"
              R"({"depth":1,"screenName":"Cart","screenType":"Dialog"}]})");
}

TEST_F(ScreenChanges, ReportsByNameAreManual) {
    start(false);
    library.reportScreenAppeared("Cart");
    library.reportScreenDisappeared("Cart");
    host.advance(10);
    EXPECT_THAT(uploaded(), ElementsAre("appear manual Cart", "disappear manual Cart"));
}

TEST_F(ScreenChanges, AnEmptyHierarchyIsRefused) {
    start(false);
    library.reportScreenChange({}, ScreenChangeType::appear, ScreenDetectionType::manual);
    host.capture.expectLines({errorLine(LogTag::signal, "Screen hierarchy cannot be empty")});
}

TEST_F(ScreenChanges, AReportWhilePausedIsRefusedWithTheLineOfDisappearance) {
    start(false);
    ASSERT_EQ(library.pauseRecording(), SessionPauseResult::success);
    library.reportScreenAppeared("Cart");
    host.capture.expectLines({errorLine(LogTag::signal, notStartedLine)});
}

TEST_F(ScreenChanges, AReportWhileAStopIsInProgressIsNeitherRecordedNorALine) {
    start(false);
    host.advance(0.5);
    library.reportScreenAppeared("Cart");
    const auto stopping = library.stopRecording();
    ASSERT_TRUE(library.hasActiveSession());
    (void)host.capture.take();
    library.reportScreenAppeared("Pay");
    EXPECT_THAT(host.capture.take(), IsEmpty());
    EXPECT_EQ(host.await(stopping).kind, SessionCloseResult::Kind::success);
    EXPECT_THAT(uploaded(), ElementsAre("appear manual Cart"));
}

TEST_F(ScreenChanges, AReportAfterTheStopIsRefused) {
    start(false);
    ASSERT_EQ(stop().kind, SessionCloseResult::Kind::success);
    (void)host.capture.take();
    library.reportScreenAppeared("Cart");
    host.capture.expectLines({errorLine(LogTag::signal, notStartedLine)});
}

}  // namespace
}  // namespace mireth
