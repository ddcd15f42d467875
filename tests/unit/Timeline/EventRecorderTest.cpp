#include "PrivateSide/Collection/EventRecorder.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <vector>

#include "PrivateSide/Collection/Timeline/SignalData.hpp"
#include "support/LogCapture.hpp"
#include "support/MemoryFileManager.hpp"

namespace mireth {
namespace {

using test::errorLine;
using test::infoLine;
using test::LogCapture;
using testing::ElementsAre;
using testing::IsEmpty;

class Recorder : public testing::Test {
  protected:
    std::vector<TimelineEvent> stored() { return buffer->flush("S1"); }

    LogCapture capture;
    std::shared_ptr<EventBuffer> buffer = std::make_shared<EventBuffer>(capture.log());
    std::shared_ptr<tests::MemoryFileManager> files = std::make_shared<tests::MemoryFileManager>();
    std::shared_ptr<SessionDataDao> store = std::make_shared<SessionDataDao>(
        capture.log(), buffer, std::make_shared<PlaybackStorage>(capture.log(), files),
        [](Work work) { work(); });
    double now = 1700000000.5;
    EventRecorder recorder{capture.log(), store, TimelineTransformer(DimensionConverter{1}),
                           [this] { return Date(now); }};
    RemoteSessionInfo session{"S1", 0};
    ScalingMetadata scaling{{}, {250, 500}, {250, 500}, {250, 500}};
};

TEST_F(Recorder, RecordsASignalWithTheTimeOfTheTouch) {
    recorder.record(DeadTapSignalData(42, {125, 250}), session, scaling);
    EXPECT_THAT(stored(), ElementsAre(TimelineEvent{
                              EventName::signalCaptured, 42,
                              SignalCapturedDetails{"DeadTap", {0.5F, 0.5F, 125, 250}, std::nullopt}}));
    capture.expectLines({infoLine(
        LogTag::signal,
        R"(Recorded event ["eventName": "SignalCaptured", "details": "DeadTap (0.5, 0.5) at (125, 250) px"])")});
}

TEST_F(Recorder, AnEventIsStoredBeforeItsLine) {
    std::vector<TimelineEvent> storedAtTheLine;
    capture.log().addLogListener([&](LogTag, LogLevel, const std::string&) { storedAtTheLine = stored(); });
    recorder.recordSessionStart(session);
    EXPECT_THAT(storedAtTheLine,
                ElementsAre(TimelineEvent{EventName::sessionStartMarker, 1700000000500, std::nullopt}));
    capture.expectLines({infoLine(LogTag::signal, R"(Recorded event ["eventName": "SessionStartMarker"])")});
}

TEST_F(Recorder, DataThatCannotBecomeAnEventAreLoggedAndNotStored) {
    struct Other final : EventData {
        EventType type() const override { return SessionInteractionType::tap; }
        std::int64_t timestamp() const override { return 0; }
    };
    recorder.record(Other(), session, scaling);
    EXPECT_THAT(stored(), IsEmpty());
    capture.expectLines(
        {errorLine(LogTag::signal, "Failed to record event. Timeline Event transformation failed.")});
}

TEST_F(Recorder, ItsOwnEventsCarryTheWallClock) {
    recorder.recordSessionStart(session);
    now = 1700000001;
    recorder.recordMetadata({{{SrMetadataType::Platform, "iOS"}}}, session);
    now = 1700000002;
    recorder.recordWindowDimensions({1170, 2532}, session);
    EXPECT_THAT(stored(),
                ElementsAre(TimelineEvent{EventName::sessionStartMarker, 1700000000500, std::nullopt},
                            TimelineEvent{EventName::metadataCaptured, 1700000001000,
                                          MetadataCapturedDetails{{{SrMetadataType::Platform, "iOS"}}}},
                            TimelineEvent{EventName::windowDimensions, 1700000002000,
                                          WindowDimensionsDetails{1170, 2532}}));
    capture.expectLines(
        {infoLine(LogTag::signal, R"(Recorded event ["eventName": "SessionStartMarker"])"),
         infoLine(LogTag::signal,
                  R"(Recorded event ["eventName": "MetadataCaptured", "details": "Platform: iOS"])"),
         infoLine(LogTag::signal,
                  R"(Recorded event ["eventName": "WindowDimensions", "details": "1170 x 2532 px"])")});
}

TEST_F(Recorder, AScreenChangeIsRecordedAsItIs) {
    const TimelineEvent event{EventName::screenChange, 9, ScreenChangeDetails{}};
    recorder.recordScreenChange(event, session);
    EXPECT_THAT(stored(), ElementsAre(event));
    (void)capture.take();
}

TEST_F(Recorder, EventsGoToTheSessionTheyWereRecordedFor) {
    recorder.recordSessionStart({"S2", 0});
    EXPECT_THAT(stored(), IsEmpty());
    EXPECT_EQ(buffer->flush("S2").size(), 1U);
    (void)capture.take();
}

TEST_F(Recorder, ClearHasTheStoreDropEventsAndFiles) {
    ASSERT_TRUE(files->createDirectory("/caches/mireth/playback"));
    files->files["/caches/mireth/playback/S0-0.mp4"] = "old";
    recorder.recordSessionStart(session);
    (void)capture.take();
    recorder.clear();
    EXPECT_THAT(stored(), IsEmpty());
    EXPECT_TRUE(files->files.empty());
    capture.expectLines(
        {infoLine(LogTag::playback, R"(Removed file. ["filePath": "/caches/mireth/playback/S0-0.mp4"])")});
}

}  // namespace
}  // namespace mireth
