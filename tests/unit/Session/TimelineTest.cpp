#include <gmock/gmock.h>

#include "support/SessionHost.hpp"

namespace mireth {
namespace {

using nlohmann::ordered_json;
using test::SessionHost;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

std::vector<std::string> types(const test::UploadedChunk& chunk) {
    std::vector<std::string> result;
    for (const auto& event : chunk.timeline) {
        result.push_back(event["type"]);
    }
    return result;
}

TEST(Timeline, BeginsWithTheStartMarkerAndTheMetadataAndThenTheDimensionsOfTheFirstFrame) {
    SessionHost host;
    host.startSession();
    host.advance(10);
    ASSERT_EQ(host.service.chunks.size(), 1U);
    const auto& timeline = host.service.chunks[0].timeline;
    EXPECT_EQ(timeline[0].dump(),
              R"({"timestamp":1700000000000,"type":"SessionStartMarker","chunkNumber":0})");
    EXPECT_EQ(
        timeline[1].dump(),
        R"({"timestamp":1700000000000,"type":"MetadataCaptured","eventDetails":{"metadata":[)"
        R"({"metadataId":"SdkVersion","metadataValue":"1.0.0"},{"metadataId":"AppVersion","metadataValue":"2.3.1"},)"
        R"({"metadataId":"DeviceId","metadataValue":"6F9619FF-8B86-D011-B42D-00C04FC964FF"},)"
        R"({"metadataId":"Platform","metadataValue":"iOS"},)"
        R"({"metadataId":"OperatingSystem","metadataValue":"iOS 17.4"},)"
        R"({"metadataId":"DeviceModel","metadataValue":"Phone"},)"
        R"({"metadataId":"DeviceCodename","metadataValue":"phone14,2"}]},"chunkNumber":0})");
    EXPECT_EQ(timeline[2].dump(),
              R"({"timestamp":1700000000500,"type":"WindowDimensions","eventDetails":)"
              R"({"windowWidthPx":1170,"windowHeightPx":2532,"mode":"Regular"},"chunkNumber":0})");
    EXPECT_EQ(timeline[3].dump(), R"({"timestamp":1700000010000,"type":"ChunkEndMarker","chunkNumber":0})");
    EXPECT_EQ(timeline.size(), 4U);
}

TEST(Timeline, TheTwentiethFrameClosesAChunkAndTheNineteenthDoesNot) {
    SessionHost host;
    host.startSession();
    host.advance(9.5);
    EXPECT_TRUE(host.service.chunks.empty());
    host.advance(0.5);
    EXPECT_EQ(host.service.chunks.size(), 1U);
}

TEST(Timeline, ChunksAreNumberedAndStampedWithTheirEnd) {
    SessionHost host;
    host.startSession();
    host.advance(30);
    ASSERT_EQ(host.service.chunks.size(), 3U);
    for (int number = 0; number < 3; ++number) {
        const auto& info = host.service.chunks[static_cast<std::size_t>(number)].info;
        EXPECT_EQ(info["chunkNumber"], number);
        EXPECT_EQ(info["chunkTimestamp"], 1700000000000 + 10000 * (number + 1));
        EXPECT_EQ(info.dump(),
                  R"({"brandId":"b1","brandDc":"us-west","projectId":"p1","sessionId":"S1","chunkNumber":)" +
                      std::to_string(number) + R"(,"playbackDataVersion":1,"chunkTimestamp":)" +
                      std::to_string(1700000000000 + 10000 * (number + 1)) + "}");
    }
}

TEST(Timeline, AWindowThatIsTurnedYieldsASecondDimensionsEvent) {
    SessionHost host;
    host.startSession();
    host.advance(2);
    host.window->resize({844, 390});
    host.advance(8);
    const auto& chunk = host.service.chunks.at(0);
    EXPECT_THAT(types(chunk), ElementsAre("SessionStartMarker", "MetadataCaptured", "WindowDimensions",
                                          "WindowDimensions", "ChunkEndMarker"));
    EXPECT_EQ(chunk.timeline[3]["eventDetails"]["windowWidthPx"], 2532);
    EXPECT_EQ(chunk.timeline[3]["eventDetails"]["windowHeightPx"], 1170);
    EXPECT_EQ(chunk.timeline[3]["timestamp"], 1700000002500);
}

TEST(Timeline, EventsAfterATurnArePlacedInTheTurnedFrame) {
    SessionHost host;
    host.startSession();
    host.advance(2);
    host.window->resize({844, 390});
    host.advance(0.5);
    host.core.orchestrator()->backdoorRecordSignal(SessionSignalType::rageTap, {422, 195});
    host.core.orchestrator()->backdoorRecordSignal(SessionSignalType::rageTap, {0, 0});
    host.advance(7.5);
    const auto& timeline = host.service.chunks.at(0).timeline;
    ASSERT_GE(timeline.size(), 6U);
    const auto& middle = timeline[4]["eventDetails"]["target"];
    EXPECT_FLOAT_EQ(middle["xNormalizedTo1"], 0.5F);
    EXPECT_FLOAT_EQ(middle["yNormalizedTo1"], 0.5F);
    // The turned window is 250 wide in the frame, and 115.5 of its 500 high.
    const auto& corner = timeline[5]["eventDetails"]["target"];
    EXPECT_FLOAT_EQ(corner["xNormalizedTo1"], 0);
    EXPECT_NEAR(corner["yNormalizedTo1"].get<float>(), 0.384478F, 1e-6F);
}

TEST(Timeline, AReportedScreenCarriesItsHierarchyWithDepths) {
    SessionHost host;
    host.startSession();
    host.advance(1);
    host.core.reportScreenChange({{"Main"}, {"Tabs"}, {"Cart", "Dialog"}}, ScreenChangeType::disappear,
                                 ScreenDetectionType::automatic, "");
    host.advance(9);
    EXPECT_EQ(
        host.service.chunks.at(0).timeline[3].dump(),
        R"({"timestamp":1700000001000,"type":"ScreenChange","eventDetails":{"changeType":"disappear",)"
        R"("detectionType":"auto","screenHierarchy":[{"depth":0,"screenName":"Main","screenType":"Screen"},)"
        R"({"depth":1,"screenName":"Tabs","screenType":"Screen"},)"
        R"({"depth":2,"screenName":"Cart","screenType":"Dialog"}]},"chunkNumber":0})");
}

TEST(Timeline, AnEventBelongsToTheChunkInWhichItHappened) {
    SessionHost host;
    host.startSession();
    host.advance(10);
    host.core.reportScreenChange({{"Late"}}, ScreenChangeType::appear, ScreenDetectionType::manual, "");
    host.advance(10);
    ASSERT_EQ(host.service.chunks.size(), 2U);
    EXPECT_THAT(types(host.service.chunks[0]), Not(Contains("ScreenChange")));
    EXPECT_THAT(types(host.service.chunks[1]), ElementsAre("ScreenChange", "ChunkEndMarker"));
    EXPECT_EQ(host.service.chunks[1].timeline[0]["chunkNumber"], 1);
}

TEST(Timeline, EventsNeverLeakIntoAnotherSession) {
    SessionHost host;
    host.startSession();
    host.advance(1);
    (void)host.stop();
    // Nobody takes this one: the session is over, and its chunk is sent.
    host.core.orchestrator()->setState({SessionState::Started{{"S1", 0}}});
    host.core.orchestrator()->backdoorRecordSignal(SessionSignalType::rageTap, {5, 5});
    EXPECT_THAT(host.errors(), ElementsAre("Failed to record event"));
    host.core.orchestrator()->setState({});
    ASSERT_EQ(host.start().kind, SessionStartResult::Kind::success);
    host.advance(10);
    EXPECT_THAT(types(host.service.chunks.at(1)),
                ElementsAre("SessionStartMarker", "MetadataCaptured", "WindowDimensions", "ChunkEndMarker"));
}

TEST(Timeline, ADiagnosticSignalIsStampedNowAndPlacedInTheFrame) {
    SessionHost host([](auto& options) { options.device.model = "X"; });
    host.window->resize({250, 500});
    host.startSession();
    host.advance(1.2);
    host.core.orchestrator()->backdoorRecordSignal(SessionSignalType::rageTap, {105, 250});
    host.core.orchestrator()->backdoorRecordSignal(SessionSignalType::errorTap, {250, 500});
    host.advance(9);
    const auto& timeline = host.service.chunks.at(0).timeline;
    EXPECT_EQ(
        timeline[3].dump(),
        R"({"timestamp":1700000001200,"type":"SignalCaptured","eventDetails":{"signalId":"RageTap","target":)"
        R"({"xNormalizedTo1":0.42,"yNormalizedTo1":0.5,"xOriginalPx":315,"yOriginalPx":750}},"chunkNumber":0})");
    EXPECT_EQ(timeline[4]["eventDetails"].dump(),
              R"({"signalId":"ErrorTap","target":{"xNormalizedTo1":1,"yNormalizedTo1":1,"xOriginalPx":750,)"
              R"("yOriginalPx":1500},"error":{"message":""}})");
}

TEST(Timeline, ASignalBeforeTheFirstFrameIsLoggedAndTheRecordingGoesOn) {
    SessionHost host;
    host.startSession();
    host.core.orchestrator()->backdoorRecordSignal(SessionSignalType::deadTap, {1, 1});
    EXPECT_THAT(host.errors(), ElementsAre("Failed to record event"));
    host.advance(1);
    EXPECT_EQ(host.state(), "started");
}

TEST(Timeline, ARecordedEventIsLoggedWithItsNameAndDetails) {
    SessionHost host({}, {LogTag::signal});
    host.startSession();
    host.core.reportScreenChange({{"Home"}}, ScreenChangeType::appear, ScreenDetectionType::manual, "");
    const auto lines = host.texts(LogLevel::info);
    EXPECT_THAT(lines, Contains("Recorded event [\"eventName\": \"SessionStartMarker\"]"));
    EXPECT_THAT(
        lines,
        Contains("Recorded event [\"eventName\": \"ScreenChange\", \"details\": \"appear (manual): Home\"]"));
}

}  // namespace
}  // namespace mireth
