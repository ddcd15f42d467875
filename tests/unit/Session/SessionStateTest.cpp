#include <gmock/gmock.h>

#include "contract/media/DecodedVideo.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::SessionHost;
using testing::Contains;
using testing::ElementsAre;

TEST(SessionState, PauseInStartedSucceedsAndIsLogged) {
    SessionHost host({}, {LogTag::lifecycle});
    host.startSession();
    (void)host.capture.take();
    EXPECT_EQ(host.core.pauseRecording(), SessionPauseResult::success);
    EXPECT_EQ(host.state(), "paused");
    EXPECT_THAT(host.texts(LogLevel::info), ElementsAre("Successfully paused the session."));
    EXPECT_EQ(host.core.orchestrator()->state().session()->sessionId, "S1");
}

TEST(SessionState, PauseInPausedAnswersAlreadyPaused) {
    SessionHost host;
    host.startSession();
    (void)host.core.pauseRecording();
    EXPECT_EQ(host.core.pauseRecording(), SessionPauseResult::alreadyPaused);
    EXPECT_EQ(host.state(), "paused");
}

TEST(SessionState, PauseInStoppedAnswersNotStarted) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    EXPECT_EQ(host.core.pauseRecording(), SessionPauseResult::notStarted);
}

TEST(SessionState, PauseInStartingAnswersNotStarted) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    const auto starting = host.core.startRecording(VexConfiguration(false, false));
    EXPECT_EQ(host.core.pauseRecording(), SessionPauseResult::notStarted);
    (void)host.await(starting);
}

TEST(SessionState, ResumeInPausedSucceedsAndIsLogged) {
    SessionHost host({}, {LogTag::lifecycle});
    host.startSession();
    (void)host.core.pauseRecording();
    (void)host.capture.take();
    EXPECT_EQ(host.core.resumeRecording(), SessionResumeResult::success);
    EXPECT_EQ(host.state(), "started");
    EXPECT_THAT(host.texts(LogLevel::info), ElementsAre("Successfully resumed the session."));
    EXPECT_EQ(host.core.orchestrator()->state().session()->sessionId, "S1");
}

TEST(SessionState, ResumeInStartedAnswersNotPaused) {
    SessionHost host;
    host.startSession();
    EXPECT_EQ(host.core.resumeRecording(), SessionResumeResult::notPaused);
}

TEST(SessionState, ResumeInStoppedAndStartingAnswersNotStarted) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    EXPECT_EQ(host.core.resumeRecording(), SessionResumeResult::notStarted);
    const auto starting = host.core.startRecording(VexConfiguration(false, false));
    EXPECT_EQ(host.core.resumeRecording(), SessionResumeResult::notStarted);
    (void)host.await(starting);
}

TEST(SessionState, StopInStoppedAnswersNotStarted) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    EXPECT_EQ(host.stop().kind, SessionCloseResult::Kind::notStarted);
}

TEST(SessionState, StopInStartingIsRefusedAndTheStartRunsToItsEnd) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    const auto starting = host.core.startRecording(VexConfiguration(false, false));
    const auto stopping = host.core.stopRecording();
    EXPECT_EQ(host.await(stopping).kind, SessionCloseResult::Kind::notStarted);
    EXPECT_EQ(host.await(starting).kind, SessionStartResult::Kind::success);
    EXPECT_EQ(host.state(), "started");
}

TEST(SessionState, LogErrorWhilePausedIsRefused) {
    SessionHost host;
    host.startSession();
    (void)host.core.pauseRecording();
    host.core.logError("x");
    EXPECT_THAT(host.errors(), ElementsAre("Can't record log error without starting the session first"));
}

TEST(SessionState, LogErrorWhileStartedIsTaken) {
    SessionHost host;
    host.startSession();
    host.core.logError(std::nullopt);
    EXPECT_THAT(host.errors(), ElementsAre());
}

TEST(SessionState, LogErrorFromAnotherThreadReachesTheSessionOnMain) {
    SessionHost host;
    host.startSession();
    (void)host.core.pauseRecording();
    std::thread([&host] { host.core.logError("x"); }).join();
    EXPECT_THAT(host.errors(), ElementsAre());
    host.phone().queue().drain();
    EXPECT_THAT(host.errors(), ElementsAre("Can't record log error without starting the session first"));
}

TEST(SessionState, AScreenReportWhilePausedIsRefusedWithTheDisappearanceText) {
    SessionHost host;
    host.startSession();
    (void)host.core.pauseRecording();
    host.core.reportScreenChange({{"Home"}}, ScreenChangeType::appear, ScreenDetectionType::manual, "");
    EXPECT_THAT(host.errors(),
                ElementsAre("Can't record screen disappearance without starting the session first"));
}

TEST(SessionState, AnEmptyScreenHierarchyIsRefused) {
    SessionHost host;
    host.startSession();
    host.core.reportScreenChange({}, ScreenChangeType::appear, ScreenDetectionType::manual, "");
    EXPECT_THAT(host.errors(), ElementsAre("Screen hierarchy cannot be empty"));
}

TEST(SessionState, TheStateIsCheckedBeforeTheHierarchy) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.core.reportScreenChange({}, ScreenChangeType::appear, ScreenDetectionType::manual, "");
    EXPECT_THAT(host.errors(),
                ElementsAre("Can't record screen disappearance without starting the session first"));
}

TEST(SessionState, ASignalOfTheDiagnosticHookIsRefusedWithoutASession) {
    SessionHost host;
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    host.core.orchestrator()->backdoorRecordSignal(SessionSignalType::rageTap, {1, 2});
    EXPECT_THAT(host.errors(), ElementsAre("Can't record signal without starting a session"));
}

TEST(SessionState, ASignalOfTheDiagnosticHookIsRefusedWhilePaused) {
    SessionHost host;
    host.startSession();
    host.advance(1);
    (void)host.core.pauseRecording();
    host.core.orchestrator()->backdoorRecordSignal(SessionSignalType::rageTap, {1, 2});
    EXPECT_THAT(host.errors(), ElementsAre("Can't record signal without starting a session"));
    (void)host.stop();
    EXPECT_THAT(host.service.chunks.at(0).timeline.dump(), testing::Not(testing::HasSubstr("RageTap")));
}

/// Whether the pixel in the frame's middle is red, as the window is, or black.
char middleOf(const platform::Image& frame) {
    const std::uint32_t pixel =
        frame.pixels()[frame.pixelWidth() * (frame.pixelHeight() / 2) + frame.pixelWidth() / 2];
    const std::uint32_t red = (pixel >> 16) & 0xFFU;
    const std::uint32_t others = ((pixel >> 8) & 0xFFU) | (pixel & 0xFFU);
    if (others > 0x20U) {
        return '?';
    }
    return red > 0xE0U ? 'R' : (red < 0x20U ? '.' : '?');
}

TEST(SessionState, WhilePausedFramesAreBlankAndTheVideoGoesOn) {
    SessionHost host;
    host.window->mutableLayer().appearance.backgroundColor = Color{1, 0, 0, 1};
    host.startSession();
    host.advance(2);
    (void)host.core.pauseRecording();
    host.advance(5);
    (void)host.core.resumeRecording();
    host.advance(3);
    ASSERT_EQ(host.service.chunks.size(), 1U);
    const auto video = tests::decodeVideo(host.service.chunks[0].video);
    std::string middles;
    for (const auto& frame : video.frames) {
        middles += middleOf(frame);
    }
    EXPECT_EQ(middles, "RRRR..........RRRRRR");
}

TEST(SessionState, APauseDoesNotOutliveItsSession) {
    SessionHost host;
    host.startSession();
    (void)host.core.pauseRecording();
    (void)host.stop();
    ASSERT_EQ(host.start().kind, SessionStartResult::Kind::success);
    host.advance(1);
    EXPECT_EQ(host.core.pauseRecording(), SessionPauseResult::success);
}

/// Fails in a way that no catch clause for std::exception sees.
struct ThrowingWriters final : platform::AssetWriterFactory {
    std::unique_ptr<platform::AssetWriter> makeWriter(const std::filesystem::path&, platform::FileType,
                                                      std::int32_t, std::int64_t) override {
        throw 42;
    }
};

TEST(SessionState, AnErrorOfAnUnknownKindInTheEncoderLeavesTheLibraryReady) {
    SessionHost host([](auto& options) { options.assetWriters = std::make_shared<ThrowingWriters>(); });
    host.startSession();
    host.advance(12);
    EXPECT_EQ(host.state(), "started");
    EXPECT_EQ(host.stop().kind, SessionCloseResult::Kind::success);
    const std::string details = "\"errorDetails\": \"AVAssetWriter() failed\"]";
    const std::string notCreated = "Failed to create chunk [\"chunkNumber\": \"0\", " + details;
    EXPECT_THAT(host.errors(), ElementsAre(notCreated, "Failed to save video chunk", notCreated,
                                           "Failed to save video chunk [" + details));
    EXPECT_EQ(host.start().kind, SessionStartResult::Kind::success);
}

}  // namespace
}  // namespace mireth
