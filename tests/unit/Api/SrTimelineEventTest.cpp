#include "PrivateSide/Api/Models/SrTimelineEvent.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "PrivateSide/Api/JSONCodec.hpp"
#include "support/LogCapture.hpp"

namespace mireth {
namespace {

const EventTarget target{0.42F, 0.31F, 450, 780};

std::string encoded(TimelineEvent event, std::int64_t chunkNumber = 3) {
    return jsonText(toJson(toSrTimelineEvent(event, chunkNumber)));
}

TEST(SrTimelineEvent, ARageTapIsWrittenAsTheServiceReadsIt) {
    EXPECT_EQ(
        encoded({EventName::signalCaptured, 1700000000123,
                 SignalCapturedDetails{"RageTap", target, std::nullopt}}),
        R"({"timestamp":1700000000123,"type":"SignalCaptured","eventDetails":{"signalId":"RageTap",)"
        R"("target":{"xNormalizedTo1":0.42,"yNormalizedTo1":0.31,"xOriginalPx":450,"yOriginalPx":780}},)"
        R"("chunkNumber":3})");
}

TEST(SrTimelineEvent, ASignalWithoutAMessageHasExactlyIdAndTarget) {
    const auto json = toJson(toSrTimelineEvent(
        {EventName::signalCaptured, 1, SignalCapturedDetails{"DeadTap", target, std::nullopt}}, 0));
    EXPECT_EQ(json["eventDetails"].size(), 2U);
}

TEST(SrTimelineEvent, AnErrorTapAddsItsMessage) {
    EXPECT_EQ(encoded({EventName::signalCaptured, 1, SignalCapturedDetails{"ErrorTap", {}, "oh \"no\""}}),
              R"({"timestamp":1,"type":"SignalCaptured","eventDetails":{"signalId":"ErrorTap",)"
              R"("target":{"xNormalizedTo1":0,"yNormalizedTo1":0,"xOriginalPx":0,"yOriginalPx":0},)"
              R"("error":{"message":"oh \"no\""}},"chunkNumber":3})");
}

TEST(SrTimelineEvent, AnInteraction) {
    EXPECT_EQ(
        encoded({EventName::userInteraction, 1, InteractionCapturedDetails{"Tap", {0.5F, -0.25F, 1.5F, 2}}}),
        R"({"timestamp":1,"type":"UserInteraction","eventDetails":{"interactionId":"Tap",)"
        R"("target":{"xNormalizedTo1":0.5,"yNormalizedTo1":-0.25,"xOriginalPx":1.5,"yOriginalPx":2}},)"
        R"("chunkNumber":3})");
}

TEST(SrTimelineEvent, WindowDimensionsAlwaysCarryTheRegularMode) {
    EXPECT_EQ(encoded({EventName::windowDimensions, 1, WindowDimensionsDetails{1170, 2532.5}}),
              R"({"timestamp":1,"type":"WindowDimensions","eventDetails":{"windowWidthPx":1170,)"
              R"("windowHeightPx":2532.5,"mode":"Regular"},"chunkNumber":3})");
}

TEST(SrTimelineEvent, Metadata) {
    EXPECT_EQ(
        encoded(
            {EventName::metadataCaptured, 1,
             MetadataCapturedDetails{{{SrMetadataType::SdkVersion, "1.0"}, {SrMetadataType::DeviceId, ""}}}}),
        R"({"timestamp":1,"type":"MetadataCaptured","eventDetails":{"metadata":[)"
        R"({"metadataId":"SdkVersion","metadataValue":"1.0"},{"metadataId":"DeviceId","metadataValue":""}]},)"
        R"("chunkNumber":3})");
    EXPECT_EQ(encoded({EventName::metadataCaptured, 1, MetadataCapturedDetails{}}),
              R"({"timestamp":1,"type":"MetadataCaptured","eventDetails":{"metadata":[]},"chunkNumber":3})");
}

TEST(SrTimelineEvent, AScreenChange) {
    ScreenChangeDetails details;
    details.changeType = SrScreenChangeType::disappear;
    details.detectionType = SrScreenChangeDetectionType::automatic;
    SrScreenHierarchyElement inner;
    inner.depth = 1;
    inner.screenName = "Inner";
    details.screenHierarchy = {{0, "Outer", "Tab"}, inner};
    EXPECT_EQ(encoded({EventName::screenChange, 1, details}),
              R"({"timestamp":1,"type":"ScreenChange","eventDetails":{"changeType":"disappear",)"
              R"("detectionType":"auto","screenHierarchy":[)"
              R"({"depth":0,"screenName":"Outer","screenType":"Tab"},)"
              R"({"depth":1,"screenName":"Inner","screenType":"Screen"}]},"chunkNumber":3})");
}

TEST(SrTimelineEvent, WithoutDetailsThereIsNoKeyForThem) {
    EXPECT_EQ(encoded({EventName::sessionStartMarker, 1, std::nullopt}, 0),
              R"({"timestamp":1,"type":"SessionStartMarker","chunkNumber":0})");
    EXPECT_EQ(encoded({EventName::chunkEndMarker, -2, std::nullopt}, 7),
              R"({"timestamp":-2,"type":"ChunkEndMarker","chunkNumber":7})");
}

TEST(SrTimelineEvent, AListKeepsItsOrder) {
    const std::vector<SrTimelineEvent> events{
        toSrTimelineEvent({EventName::sessionStartMarker, 2, std::nullopt}, 0),
        toSrTimelineEvent({EventName::chunkEndMarker, 1, std::nullopt}, 0)};
    EXPECT_EQ(jsonText(toJson(events)), R"([{"timestamp":2,"type":"SessionStartMarker","chunkNumber":0},)"
                                        R"({"timestamp":1,"type":"ChunkEndMarker","chunkNumber":0}])");
    EXPECT_EQ(jsonText(toJson(std::vector<SrTimelineEvent>{})), "[]");
}

TEST(SrTimelineEvent, ACoordinateThatIsNotFiniteFailsTheEncodingAtItsKey) {
    test::LogCapture capture;
    const EventTarget nowhere{0.5F, std::numeric_limits<float>::quiet_NaN(), 1, 1};
    const std::vector<SrTimelineEvent> events{
        toSrTimelineEvent({EventName::sessionStartMarker, 1, std::nullopt}, 0),
        toSrTimelineEvent({EventName::userInteraction, 1, InteractionCapturedDetails{"Tap", nowhere}}, 0)};
    EXPECT_EQ(JSONCodec(capture.log()).encode(toJson(events)).error(), ApiError::encodingError);
    capture.expectLines({test::errorLine(
        LogTag::network,
        R"(JSON encoding failed ["error": "The number at 1.eventDetails.target.yNormalizedTo1 )"
        R"(is infinite or not a number."])")});
}

}  // namespace
}  // namespace mireth
