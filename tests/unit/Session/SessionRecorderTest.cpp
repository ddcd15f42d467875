#include "PrivateSide/Collection/SessionRecorder.hpp"

#include <gmock/gmock.h>

#include <fstream>

#include "Platform/Async/QueueExecutors.hpp"
#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using test::errorLine;
using testing::ElementsAre;

/// A recorder by itself, never started.
struct SessionRecorderAlone : testing::Test {
    test::SessionHost host;
    test::LogCapture capture{{LogTag::navigation}};
    int errors = 0;

    std::shared_ptr<SessionRecorder> make() {
        auto& log = capture.log();
        const auto& services = host.phone().services();
        const auto clock = [] { return Date(1); };
        const auto dao = std::make_shared<SessionDataDao>(
            log, std::make_shared<EventBuffer>(log), std::make_shared<PlaybackStorage>(log, services.files),
            [](Work work) { work(); });
        SessionRecorder::Collaborators parts;
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
            log, std::move(parts), PlaybackConfiguration{}, makeMainExecutor(services.mainQueue),
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

TEST(Recording, AStoreThatIsFullLosesTheChunkAndTheRecordingGoesOn) {
    test::SessionHost host;
    host.startSession();
    host.phone().queue().drain();
    for (int file = 0; file < 180; ++file) {
        std::ofstream(host.storeDirectory() / ("other-" + std::to_string(file) + ".mp4")) << "x";
    }
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
