#include "PrivateSide/Collection/SessionRecorder.hpp"

#include <gmock/gmock.h>

#include <fstream>

#include "Platform/Async/QueueExecutors.hpp"
#include "support/Finger.hpp"
#include "support/ScriptedAssetWriter.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::errorLine;
using testing::ElementsAre;

/// A recorder by itself, never started.
struct SessionRecorderAlone : testing::Test {
    test::SessionHost host;
    test::LogCapture capture{{LogTag::navigation}};
    /// Of the recorder made last.
    SessionRecorder::Collaborators parts;
    int errors = 0;

    std::shared_ptr<SessionRecorder> make() {
        auto& log = capture.log();
        const auto& services = host.phone().services();
        const auto clock = [] { return Date(1); };
        const auto dao = std::make_shared<SessionDataDao>(
            log, std::make_shared<EventBuffer>(log), std::make_shared<PlaybackStorage>(log, services.files),
            [](Work work) { work(); });
        parts.frameRecorder = std::make_shared<FrameRecorder>(log, host.window, services.graphics,
                                                              FrameRecorder::scheduleOn(services.mainQueue));
        parts.videoChunkManager = std::make_shared<VideoChunkManager>(log, PlaybackConfiguration{}, nullptr);
        parts.eventRecorder =
            std::make_shared<EventRecorder>(log, dao, TimelineTransformer(DimensionConverter{1}), clock);
        parts.timelineEventDetector = std::make_shared<TimelineEventDetector>(
            log, host.window,
            std::make_unique<MirethGestureRecognizer>(log, std::make_shared<GestureRecognizerObserver>()),
            TimelineEventDetector::Environment{services.mainQueue, clock,
                                               DevicePerformanceEvaluator(*services.device)});
        parts.metadataDetector = std::make_shared<MetadataDetector>(
            log, std::make_shared<ClientDetailsProvider>(services.userDefaults), services.information,
            services.information, services.device);
        parts.windowDimensionsDetector =
            std::make_shared<WindowDimensionsDetector>(log, DimensionConverter{1});
        return std::make_shared<SessionRecorder>(
            log, parts, PlaybackConfiguration{}, makeMainExecutor(services.mainQueue),
            [queue = services.mainQueue](Work work) { queue->post(std::move(work)); }, clock);
    }

    void start(SessionRecorder& recorder) {
        recorder.startRecording({"S", 0}, VexConfiguration{}, [this] { ++errors; });
    }
};

TEST_F(SessionRecorderAlone, AScreenChangeBeforeTheStartIsRefused) {
    make()->record({{"Home"}}, ScreenChangeType::appear, ScreenDetectionType::manual);
    capture.expectLines(
        {errorLine(LogTag::navigation, "Can't record screen change without starting the session first.")});
}

TEST_F(SessionRecorderAlone, AFrameWithoutASessionIsRefusedTwiceWithItsLines) {
    const auto recorder = make();
    const platform::Image image = platform::Image::filled(10, 10, 0xff000000U);
    recorder->processWindowDimensionsChange(image);
    recorder->pushFrameToBuffer(image);
    capture.expectLines(
        {errorLine(LogTag::playback, "Failed to handle window dimensions change. Session is nil."),
         errorLine(LogTag::playback, "Failed to handle frame recording. Session is nil.")});
    EXPECT_EQ(errors, 0) << "nobody asked to be told";
}

TEST_F(SessionRecorderAlone, AFrameAfterTheStopIsRefusedAndReported) {
    const auto recorder = make();
    start(*recorder);
    bool stopped = false;
    asio::co_spawn(makeMainExecutor(host.phone().services().mainQueue), recorder->stopRecording(),
                   [&stopped](const std::exception_ptr& exception) { stopped = exception == nullptr; });
    host.phone().queue().drain();
    ASSERT_TRUE(stopped);
    (void)capture.take();
    const platform::Image image = platform::Image::filled(10, 10, 0xff000000U);
    recorder->processWindowDimensionsChange(image);
    EXPECT_EQ(errors, 1);
    recorder->pushFrameToBuffer(image);
    EXPECT_EQ(errors, 2);
    capture.expectLines(
        {errorLine(LogTag::playback, "Failed to handle window dimensions change. Session is nil."),
         errorLine(LogTag::playback, "Failed to handle frame recording. Session is nil.")});
}

TEST_F(SessionRecorderAlone, AFrameBeforeAnyScalingIsRefusedAndReported) {
    const auto recorder = make();
    start(*recorder);
    (void)capture.take();
    recorder->pushFrameToBuffer(platform::Image::filled(10, 10, 0xff000000U));
    capture.expectLines({errorLine(
        LogTag::playback, "Failed to scale the frame to the requested size. ScalingMetadata is nil.")});
    EXPECT_EQ(errors, 1);
}

TEST_F(SessionRecorderAlone, ResumeNeverCallsItsCompletion) {
    const auto recorder = make();
    start(*recorder);
    bool called = false;
    recorder->pauseRecording();
    recorder->resumeRecording([&called] { called = true; });
    host.phone().queue().drain();
    EXPECT_FALSE(called);
}

TEST_F(SessionRecorderAlone, ResumeResumesTheDetectorBeforeTheFrames) {
    const auto recorder = make();
    int events = 0;
    parts.timelineEventDetector->startDetection([&events](const EventData&) { ++events; });
    host.phone().queue().drain();
    recorder->pauseRecording();
    // The frames' part of it: they were never started.
    const std::string frames = "Callback is nil while trying to resume playback recording";
    capture.log().addLogListener([&](LogTag, LogLevel, const std::string& line) {
        if (line == frames) {
            test::Finger(host.window).tap({1, 1});
        }
    });
    recorder->resumeRecording();
    EXPECT_EQ(events, 1);
    capture.expectLines({errorLine(LogTag::playback, frames)});
}

TEST_F(SessionRecorderAlone, DataThatAreNeitherSignalNorInteractionAreLoggedAndDropped) {
    struct Data final : EventData {
        EventType type() const override { return SessionInteractionType::tap; }
        std::int64_t timestamp() const override { return 1; }
    };
    const auto& services = host.phone().services();
    auto& log = capture.log();
    const auto dao = std::make_shared<SessionDataDao>(log, std::make_shared<EventBuffer>(log),
                                                      std::make_shared<PlaybackStorage>(log, services.files),
                                                      [](Work work) { work(); });
    EventRecorder recorder(log, dao, TimelineTransformer(DimensionConverter{1}), [] { return Date(1); });
    recorder.record(Data{}, {"S", 0}, ScalingMetadata{});
    capture.expectLines(
        {errorLine(LogTag::signal, "Failed to record event. Timeline Event transformation failed.")});
}

// The whole library, for what only shows there.

/// As many files as the longest recording makes.
void fillStore(test::SessionHost& host) {
    host.phone().queue().drain();
    for (int file = 0; file < 180; ++file) {
        std::ofstream(host.storeDirectory() / ("other-" + std::to_string(file) + ".mp4")) << "x";
    }
}

TEST(Recording, AStoreThatIsFullLosesTheChunkAndTheRecordingGoesOn) {
    test::SessionHost host;
    host.startSession();
    fillStore(host);
    host.advance(10);
    EXPECT_TRUE(host.service.chunks.empty());
    EXPECT_THAT(host.errors(),
                ElementsAre("Failed to create chunk [\"chunkNumber\": \"0\", \"errorDetails\": "
                            "\"Playback storage is full\"]",
                            "Failed to save video chunk"));
    EXPECT_EQ(host.state(), "started");
    std::filesystem::remove(host.storeDirectory() / "other-0.mp4");
    host.advance(10);
    ASSERT_EQ(host.service.chunks.size(), 1U);
    EXPECT_EQ(host.service.chunks[0].info["chunkNumber"], 0);
}

TEST(Recording, ALastChunkThatCannotBeSavedIsLoggedWithTheReasonAndTheSessionIsClosed) {
    test::SessionHost host;
    host.startSession();
    fillStore(host);
    host.advance(1);
    EXPECT_EQ(host.stop().kind, SessionCloseResult::Kind::success);
    host.capture.expectLines(
        {errorLine(LogTag::playback,
                   "Failed to create chunk [\"chunkNumber\": \"0\", \"errorDetails\": "
                   "\"Playback storage is full\"]"),
         errorLine(LogTag::playback,
                   "Failed to save video chunk [\"errorDetails\": \"Playback storage is full\"]")});
    EXPECT_THAT(host.service.calls, ElementsAre("configuration", "create", "close"));
}

TEST(Recording, AStopWaitsForABusyWriterAndAnswersWhenItFails) {
    const auto script = std::make_shared<test::WriterScript>();
    test::SessionHost host([&script](auto& options) {
        options.assetWriters = std::make_shared<test::ScriptedWriterFactory>(script);
    });
    script->ready = false;
    script->endStatus = platform::AssetWriterStatus::failed;
    host.startSession();
    host.advance(1);
    std::optional<SessionCloseResult> closed;
    host.core.stopRecording().then([&closed](const SessionCloseResult& result) { closed = result; });
    host.advance(60);
    EXPECT_EQ(closed, std::nullopt);
    script->askForMore = nullptr;
    host.phone().queue().drain();
    EXPECT_EQ(closed, SessionCloseResult::of(SessionCloseResult::Kind::success));
    const std::string reason = "\"errorDetails\": \"Invalid videoWriter status: failed\"]";
    host.capture.expectLines(
        {errorLine(LogTag::playback, "Failed to create chunk [\"chunkNumber\": \"0\", " + reason),
         errorLine(LogTag::playback, "Failed to save video chunk [" + reason)});
}

TEST(Recording, LeftOversOfAProcessThatEndedWhileItWroteAreRemovedAtTheStartAndNotCounted) {
    test::SessionHost host;
    std::filesystem::create_directories(host.storeDirectory());
    for (int file = 0; file < 180; ++file) {
        std::ofstream(host.storeDirectory() / (".pending-" + std::to_string(file))) << "x";
    }
    host.startSession();
    host.phone().queue().drain();
    EXPECT_TRUE(std::filesystem::is_empty(host.storeDirectory()));
    host.advance(10);
    EXPECT_EQ(host.service.chunks.size(), 1U);
    EXPECT_THAT(host.errors(), ElementsAre());
}

TEST(Recording, WithoutANetworkChunksAreSkippedAndTheRecordingGoesOn) {
    test::SessionHost host({}, {LogTag::network});
    host.startSession();
    host.phone().network().setPath({});
    host.phone().queue().drain();
    (void)host.capture.take();
    host.advance(10);
    EXPECT_TRUE(host.service.chunks.empty());
    EXPECT_THAT(host.texts(LogLevel::info),
                testing::Contains("Canceling buffer chunk push, network unavailable"));
    host.phone().network().setPath({.satisfied = true, .usesWifi = true});
    host.advance(10);
    ASSERT_EQ(host.service.chunks.size(), 1U);
    EXPECT_EQ(host.service.chunks[0].info["chunkNumber"], 1);
}

TEST(Recording, MaskingCanBeSwitchedOffAndIsLogged) {
    test::SessionHost host({}, {LogTag::playback});
    ASSERT_EQ(host.initialize(), InitializationResult::success);
    (void)host.start(VexConfiguration(true, false));
    EXPECT_THAT(host.texts(LogLevel::info), ElementsAre("Frames recorder started", "Masking is disabled"));
}

}  // namespace
}  // namespace mireth
