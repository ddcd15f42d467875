#include <gmock/gmock.h>

#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::IngestionFake;
using test::SessionHost;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using Kind = SessionCloseResult::Kind;

TEST(Stop, ClosesTheSessionAfterTheLastChunkIsUploaded) {
    SessionHost host;
    host.startSession();
    host.advance(3.5);
    EXPECT_EQ(host.stop(), SessionCloseResult::of(Kind::success));
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create", "record", "close"));
    EXPECT_EQ(host.service.chunks[0].info["chunkNumber"], 0);
}

TEST(Stop, WithoutAFrameUploadsNothing) {
    SessionHost host;
    host.startSession();
    EXPECT_EQ(host.stop().kind, Kind::success);
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create", "close"));
}

TEST(Stop, FromPausedClosesToo) {
    SessionHost host;
    host.startSession();
    (void)host.core.pauseRecording();
    EXPECT_EQ(host.stop().kind, Kind::success);
    EXPECT_EQ(host.service.closed, 1);
}

TEST(Stop, ARefusedCloseAnswersFailAndLeavesTheLibraryReady) {
    SessionHost host;
    host.startSession();
    host.service.close = [](const auto&) { return IngestionFake::failure(500); };
    EXPECT_EQ(host.stop(), SessionCloseResult::fail("Request failed."));
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_EQ(host.start().kind, SessionStartResult::Kind::success);
}

TEST(Stop, TheStateIsStoppedBeforeTheRemoteCloseRuns) {
    SessionHost host;
    host.startSession();
    std::string stateAtClose;
    host.service.close = [&](const auto&) {
        stateAtClose = host.state();
        return IngestionFake::ok(R"({"status":"SUCCESS"})");
    };
    (void)host.stop();
    EXPECT_EQ(stateAtClose, "stopped");
}

TEST(Stop, SwitchesAutomaticTrackingOffWhetherOrNotItWasOn) {
    SessionHost host({}, {LogTag::lifecycle, LogTag::navigation});
    host.startSession();
    (void)host.capture.take();
    (void)host.stop();
    const auto lines = host.texts(LogLevel::info);
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines[0], "Disabling automatic screen change detection.");
    EXPECT_EQ(lines[1], "Automatic screen change detection is OFF.");
    EXPECT_EQ(lines[2], "Stopped tracking Navigation.");
}

TEST(Stop, ASecondStopWhileTheFirstIsInFlightGetsItsResultAndClosesOnce) {
    SessionHost host;
    host.startSession();
    host.advance(2);
    const auto first = host.core.stopRecording();
    const auto second = host.core.stopRecording();
    EXPECT_EQ(host.await(first).kind, Kind::success);
    EXPECT_EQ(host.await(second).kind, Kind::success);
    EXPECT_EQ(host.service.closed, 1);
    EXPECT_EQ(host.service.chunks.size(), 1U);
}

TEST(Stop, AStopAfterTheStopAnswersNotStarted) {
    SessionHost host;
    host.startSession();
    (void)host.stop();
    EXPECT_EQ(host.stop().kind, Kind::notStarted);
    EXPECT_EQ(host.service.closed, 1);
}

TEST(Stop, ARefusedUploadEndsTheSessionLikeAHostStop) {
    SessionHost host;
    host.startSession();
    host.service.record = [](const auto&) { return IngestionFake::ok(R"({"status":"THROTTLED"})"); };
    host.advance(10.2);
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_EQ(host.service.closed, 1);
    EXPECT_THAT(host.errors(), Contains("Single chunk skipped: Error during chunk push. [\"statusCode\": "
                                        "\"THROTTLED\", \"transactionId\": \"T\"]"));
}

TEST(Stop, AFailedUploadEndsTheSession) {
    SessionHost host;
    host.startSession();
    host.service.record = [](const auto&) { return IngestionFake::unreachable(); };
    host.advance(10.2);
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_EQ(host.service.closed, 1);
}

TEST(Stop, AHostStopWhileARefusedUploadEndsTheSessionClosesOnce) {
    SessionHost host;
    host.startSession();
    host.service.record = [](const auto&) { return IngestionFake::ok(R"({"status":"ERROR"})"); };
    host.advance(9.9);
    const auto stopping = host.core.stopRecording();
    (void)host.await(stopping);
    host.advance(5);
    EXPECT_EQ(host.service.closed, 1);
}

TEST(Stop, TheBackgroundEndsAndClosesTheSession) {
    SessionHost host({}, {LogTag::lifecycle});
    host.startSession();
    host.advance(1);
    (void)host.capture.take();
    host.phone().application().moveToBackground();
    EXPECT_THAT(host.texts(LogLevel::info), Contains("App moved to the background. Session is closed"));
    host.advance(0.1);
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_EQ(host.service.closed, 1);
}

TEST(Stop, TheBackgroundEndsAPausedSessionToo) {
    SessionHost host;
    host.startSession();
    (void)host.core.pauseRecording();
    host.phone().application().moveToBackground();
    host.advance(0.1);
    EXPECT_EQ(host.state(), "stopped");
}

TEST(Stop, ASessionStartedAfterOneThatTheBackgroundEndedIsNotStoppedByTheMemoryOfIt) {
    SessionHost host;
    host.startSession();
    host.phone().application().moveToBackground();
    host.advance(1);
    ASSERT_EQ(host.state(), "stopped");
    ASSERT_EQ(host.start().kind, SessionStartResult::Kind::success);
    host.advance(5);
    EXPECT_EQ(host.state(), "started");
    host.phone().application().moveToBackground();
    host.advance(1);
    EXPECT_EQ(host.state(), "stopped");
    EXPECT_EQ(host.service.closed, 2);
}

TEST(Stop, TheBackgroundAfterAStopIsNotNoticed) {
    SessionHost host({}, {LogTag::lifecycle});
    host.startSession();
    (void)host.stop();
    (void)host.capture.take();
    host.phone().application().moveToBackground();
    host.advance(1);
    EXPECT_TRUE(host.capture.take().empty());
}

TEST(Stop, TheLastFrameBeforeTheStopIsInTheLastChunk) {
    SessionHost host;
    host.startSession();
    host.advance(0.5);
    (void)host.stop();
    ASSERT_EQ(host.service.chunks.size(), 1U);
}

TEST(Stop, NothingIsRecordedAfterIt) {
    SessionHost host;
    host.startSession();
    host.advance(3);
    (void)host.stop();
    const auto calls = host.service.calls;
    host.advance(60);
    EXPECT_EQ(host.service.calls, calls);
}

}  // namespace
}  // namespace mireth
