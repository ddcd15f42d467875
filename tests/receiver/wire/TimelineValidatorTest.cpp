// Timelines: the sound one, and one wrong thing at a time.
#include "wire/TimelineValidator.hpp"

#include <gtest/gtest.h>

#include "support/Upload.hpp"

namespace mireth::receiver {
namespace {

std::string errorOf(const std::string& text) {
    const auto events = validateTimeline(text, 3);
    return events ? "" : events.error();
}

// One event of `type` with these details (no details when empty).
std::string event(const std::string& type, const std::string& details) {
    return R"([{"timestamp":1,"type":")" + type + R"(",)" +
           (details.empty() ? "" : R"("eventDetails":)" + details + ",") + R"("chunkNumber":3}])";
}

constexpr const char* target =
    R"("target":{"xNormalizedTo1":0.5,"yNormalizedTo1":1,"xOriginalPx":2,"yOriginalPx":3})";

TEST(TimelineValidator, TakesEveryKindOfEvent) {
    const auto events = validateTimeline(test::timelineJson(3), 3);
    ASSERT_TRUE(events) << events.error();
    ASSERT_EQ(events->size(), 8U);
    EXPECT_EQ(events->at(0).type, "SessionStartMarker");
    EXPECT_EQ(events->at(0).timestamp, 1'700'000'000'000);
    EXPECT_EQ(events->at(0).details, "");
    EXPECT_EQ(events->at(2).details, R"({"windowWidthPx":1170,"windowHeightPx":2532.5,"mode":"Regular"})");
}

TEST(TimelineValidator, TakesAnEmptyTimelineAndNegativeTimes) {
    EXPECT_EQ(errorOf("[]"), "");
    EXPECT_EQ(errorOf(R"([{"timestamp":-9223372036854775808,"type":"ChunkEndMarker","chunkNumber":3}])"), "");
}

TEST(TimelineValidator, RefusesWhatIsNoListOfEvents) {
    EXPECT_EQ(errorOf(""), "the timeline is not JSON at line 1, column 1");
    EXPECT_EQ(errorOf("{}"), "the timeline is not an array of at most 50000 events");
    EXPECT_EQ(errorOf("[1]"), "timeline event 0: it is not an object");
    EXPECT_EQ(errorOf(std::string(100, '[') + std::string(100, ']')),
              "the timeline is nested deeper than 16 levels");
    std::string many = "[0";
    for (int i = 0; i < 50'000; ++i) {
        many += ",0";
    }
    EXPECT_EQ(errorOf(many + "]"), "the timeline is not an array of at most 50000 events");
}

TEST(TimelineValidator, RefusesMissingUnknownAndMistypedKeys) {
    EXPECT_EQ(errorOf(R"([{"type":"ChunkEndMarker","chunkNumber":3}])"),
              "timeline event 0: it lacks \"timestamp\"");
    EXPECT_EQ(errorOf(R"([{"timestamp":1,"type":"ChunkEndMarker","chunkNumber":3,"x":1}])"),
              "timeline event 0: it has the unknown key \"x\"");
    for (const auto* const value : {"1.5", "\"1\"", "null", "9223372036854775808", "1e300"}) {
        EXPECT_EQ(errorOf(R"([{"timestamp":)" + std::string(value) +
                          R"(,"type":"ChunkEndMarker","chunkNumber":3}])"),
                  "timeline event 0: \"timestamp\" is not a 64-bit integer");
    }
    EXPECT_EQ(errorOf(R"([{"timestamp":1,"type":"Other","chunkNumber":3}])"),
              "timeline event 0: \"type\" has the unknown value \"Other\"");
    EXPECT_EQ(errorOf(R"([{"timestamp":1,"type":7,"chunkNumber":3}])"),
              "timeline event 0: \"type\" is not a string");
}

TEST(TimelineValidator, TheChunkNumberMustBeTheChunks) {
    EXPECT_EQ(errorOf(R"([{"timestamp":1,"type":"ChunkEndMarker","chunkNumber":2}])"),
              "timeline event 0: \"chunkNumber\" is not the chunk's, 3");
}

TEST(TimelineValidator, DetailsStandWithTheTypesThatHaveThem) {
    EXPECT_EQ(errorOf(event("ChunkEndMarker", "{}")),
              "timeline event 0: an event of type \"ChunkEndMarker\" must not have \"eventDetails\"");
    EXPECT_EQ(errorOf(event("SessionStartMarker", "null")),
              "timeline event 0: an event of type \"SessionStartMarker\" must not have \"eventDetails\"");
    for (const auto* const type :
         {"SignalCaptured", "UserInteraction", "WindowDimensions", "MetadataCaptured", "ScreenChange"}) {
        EXPECT_EQ(errorOf(event(type, "")),
                  "timeline event 0: an event of type \"" + std::string(type) + "\" lacks \"eventDetails\"");
        EXPECT_EQ(errorOf(event(type, "[]")), "timeline event 0: \"eventDetails\" is not an object");
    }
}

TEST(TimelineValidator, ChecksTheDetailsOfEachKind) {
    const auto signal = [](const std::string& inside) {
        return errorOf(event("SignalCaptured", "{" + inside + "}"));
    };
    EXPECT_EQ(signal(std::string(R"("signalId":"DeadTap",)") + target), "");
    EXPECT_EQ(signal(std::string(R"("signalId":"Tap",)") + target),
              "timeline event 0: \"signalId\" has the unknown value \"Tap\"");
    EXPECT_EQ(signal(R"("signalId":"DeadTap","target":{})"),
              "timeline event 0: \"target\" lacks \"xNormalizedTo1\"");
    EXPECT_EQ(
        signal(
            R"("signalId":"DeadTap","target":{"xNormalizedTo1":"0","yNormalizedTo1":1,"xOriginalPx":2,"yOriginalPx":3})"),
        "timeline event 0: \"xNormalizedTo1\" is not a number");
    EXPECT_EQ(signal(std::string(R"("signalId":"ErrorTap","error":"x",)") + target),
              "timeline event 0: \"error\" is not an object");
    EXPECT_EQ(signal(std::string(R"("signalId":"ErrorTap","error":{"message":1},)") + target),
              "timeline event 0: \"message\" is not a string");
    EXPECT_EQ(errorOf(event("UserInteraction", std::string(R"({"interactionId":"RageTap",)") + target + "}")),
              "timeline event 0: \"interactionId\" has the unknown value \"RageTap\"");
    EXPECT_EQ(errorOf(event("WindowDimensions", R"({"windowWidthPx":1,"windowHeightPx":2,"mode":"Other"})")),
              "timeline event 0: \"mode\" has the unknown value \"Other\"");
    EXPECT_EQ(
        errorOf(event("WindowDimensions", R"({"windowWidthPx":null,"windowHeightPx":2,"mode":"Regular"})")),
        "timeline event 0: \"windowWidthPx\" is not a number");
    EXPECT_EQ(errorOf(event("MetadataCaptured", R"({"metadata":{}})")),
              "timeline event 0: \"metadata\" is not an array");
    EXPECT_EQ(errorOf(event("MetadataCaptured", R"({"metadata":[{"metadataId":"X","metadataValue":"y"}]})")),
              "timeline event 0: \"metadataId\" has the unknown value \"X\"");
    EXPECT_EQ(errorOf(event("ScreenChange",
                            R"({"changeType":"gone","detectionType":"auto","screenHierarchy":[]})")),
              "timeline event 0: \"changeType\" has the unknown value \"gone\"");
    EXPECT_EQ(
        errorOf(event("ScreenChange", R"({"changeType":"appear","detectionType":"x","screenHierarchy":[]})")),
        "timeline event 0: \"detectionType\" has the unknown value \"x\"");
    EXPECT_EQ(
        errorOf(event(
            "ScreenChange",
            R"({"changeType":"appear","detectionType":"auto","screenHierarchy":[{"depth":0.5,"screenName":"a","screenType":"b"}]})")),
        "timeline event 0: \"depth\" is not a 64-bit integer");
}

TEST(TimelineValidator, NamesTheEventThatIsWrong) {
    EXPECT_EQ(errorOf(R"([{"timestamp":1,"type":"ChunkEndMarker","chunkNumber":3},{}])"),
              "timeline event 1: it lacks \"timestamp\"");
}

}  // namespace
}  // namespace mireth::receiver
