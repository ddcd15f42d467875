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

constexpr const char* skipped = "Single chunk skipped: Error during chunk push.";

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
    EXPECT_THAT(host.errorMessages(),
                ElementsAre("Request failed.", "Unexpected error during session closure",
                            "API request for closing session failed."));
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
    EXPECT_THAT(host.errorMessages(),
                ElementsAre("Network request failed", "Unexpected error during playback recording", skipped));
}

TEST(Stop, AHostStopWhileARefusedUploadEndsTheSessionClosesOnce) {
    SessionHost host;
    host.startSession();
    std::optional<Async<SessionCloseResult>> stopping;
    host.service.record = [&](const auto&) {
        // The host stops while the answer is on its way.
        host.phone().queue().post([&] { stopping = host.core.stopRecording(); });
        return IngestionFake::ok(R"({"status":"ERROR"})");
    };
    host.advance(10);
    ASSERT_TRUE(stopping);
    EXPECT_EQ(host.await(*stopping).kind, Kind::success);
    host.advance(5);
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create", "record", "close"));
    EXPECT_THAT(host.errorMessages(), ElementsAre(skipped));
}

TEST(Stop, AHostStopAfterARefusedUploadHasSetItOffGetsItsResultAndClosesOnce) {
    SessionHost host;
    host.startSession();
    host.service.record = [](const auto&) { return IngestionFake::ok(R"({"status":"ERROR"})"); };
    std::optional<Async<SessionCloseResult>> stopping;
    host.core.addLogListener([&](LogTag, LogLevel, const std::string& line) {
        // Logged right before the session is told to stop; posted, the host's stop comes right after that
        // one.
        if (line.starts_with("Single chunk skipped")) {
            host.phone().queue().postBackground(
                [&] { host.phone().queue().post([&] { stopping = host.core.stopRecording(); }); });
        }
    });
    host.advance(10);
    ASSERT_TRUE(stopping);
    EXPECT_EQ(host.await(*stopping).kind, Kind::success);
    host.advance(5);
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create", "record", "close"));
    EXPECT_THAT(host.errorMessages(), ElementsAre(skipped));
}

/// Makes orchestrators as ever, and remembers the recorder of the last.
struct RecorderOfTheGraph {
    std::weak_ptr<SessionRecorder> recorder;

    MirethSRCore::OrchestratorClass orchestratorClass() {
        return [this](MirethLog& log, Orchestrator::Collaborators parts, Executor executor,
                      CurrentTimeProvider clock) {
            recorder = parts.sessionRecorder;
            return MirethSRCore::makeOrchestrator(log, std::move(parts), std::move(executor),
                                                  std::move(clock));
        };
    }
};

TEST(Stop, ARecordingErrorEndsTheSessionLikeAHostStop) {
    SessionHost host;
    RecorderOfTheGraph graph;
    MirethSRCore core(host.capture.log(), host.phone().services(), graph.orchestratorClass());
    ASSERT_EQ(core.initializeProject("b", "p", host.window), InitializationResult::success);
    ASSERT_EQ(host.await(core.startRecording(VexConfiguration(false, false))).kind,
              SessionStartResult::Kind::success);
    // A picture that nobody has measured.
    graph.recorder.lock()->pushFrameToBuffer(platform::Image::filled(10, 10, 0xFF000000U));
    EXPECT_TRUE(core.hasActiveSession()) << "the stop is a task of its own";
    host.advance(0.1);
    EXPECT_FALSE(core.hasActiveSession());
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create", "close"));
    EXPECT_THAT(host.errors(),
                ElementsAre("Failed to scale the frame to the requested size. ScalingMetadata is nil."));
    EXPECT_EQ(host.await(core.stopRecording()).kind, Kind::notStarted);
    EXPECT_EQ(host.await(core.startRecording(VexConfiguration(false, false))).kind,
              SessionStartResult::Kind::success);
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
