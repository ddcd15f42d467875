// What list and show print, literally.
#include "reports/SessionReports.hpp"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

namespace mireth::receiver {
namespace {

SessionContents sample() {
    const SessionSummary summary{.session = {.id = "S1",
                                             .brandId = "b\x1B[31m",
                                             .brandDc = "US_WEST",
                                             .projectId = "p1",
                                             .startMillis = 1'700'000'000'123,
                                             .closedMillis = 1'700'000'020'000},
                                 .chunks = 2,
                                 .frames = 25,
                                 .bytes = 1'234'500,
                                 .durationMillis = 12'500,
                                 .events = 3,
                                 .logLines = 1,
                                 .deviceModel = {},
                                 .deviceSystem = {},
                                 .screens = {}};
    return {.summary = summary,
            .chunks = {{.number = 0,
                        .endMillis = 10,
                        .receivedMillis = 11,
                        .bytes = 1'234'000,
                        .frames = 20,
                        .durationMillis = 10'000,
                        .video = {.key = "a", .digest = {}},
                        .events = 2,
                        .timeline = R"([{"timestamp":1,"type":"SessionStartMarker","chunkNumber":0},)"
                                    R"({"timestamp":-2,"type":"SignalCaptured","eventDetails":)"
                                    R"({"signalId":"RageTap","x":0.42},"chunkNumber":0}])"},
                       {.number = 1,
                        .endMillis = 12,
                        .receivedMillis = 13,
                        .bytes = 500,
                        .frames = 5,
                        .durationMillis = 2'500,
                        .video = {.key = "b", .digest = {}},
                        .events = 1,
                        .timeline = R"([{"timestamp":3,"type":"ChunkEndMarker","chunkNumber":1}])"}},
            .logLines = {{.sessionId = "S1",
                          .receivedMillis = 1'700'000'001'000,
                          .levelName = "error",
                          .message = "line\nbreak"}}};
}

std::string whereVideosLie(const std::string& key) {
    return "/d/videos/" + key + ".mp4";
}

TEST(Reports, ShowAsText) {
    std::ostringstream out;
    writeShowText(out, sample(), whereVideosLie);
    EXPECT_EQ(out.str(),
              "session  S1\n"
              "project  b\\u{1B}[31m/p1 (US_WEST)\n"
              "start    2023-11-14T22:13:20.123Z\n"
              "state    closed 2023-11-14T22:13:40.000Z\n"
              "video    2 chunks, 25 frames, 1.2 MB, 12.500 s\n"
              "\n"
              "chunk  frames   bytes  duration  events  video\n"
              "    0      20  1.2 MB  10.000 s       2  /d/videos/a.mp4\n"
              "    1       5   500 B   2.500 s       1  /d/videos/b.mp4\n"
              "\n"
              "events of kind      count\n"
              "ChunkEndMarker          1\n"
              "SessionStartMarker      1\n"
              "SignalCaptured          1\n"
              "\n"
              "chunk  timestamp  event               details\n"
              "    0          1  SessionStartMarker\n"
              "    0         -2  SignalCaptured      {\"signalId\":\"RageTap\",\"x\":0.42}\n"
              "    1          3  ChunkEndMarker\n"
              "\n"
              "received                  level  message\n"
              "2023-11-14T22:13:21.000Z  error  line\\nbreak\n");
}

TEST(Reports, ShowAsJsonHoldsEverything) {
    std::ostringstream out;
    writeShowJson(out, sample(), whereVideosLie);
    const auto json = nlohmann::json::parse(out.str());
    EXPECT_EQ(json.at("session").at("id"), "S1");
    EXPECT_EQ(json.at("session").at("brandId"), "b\x1B[31m");
    EXPECT_EQ(json.at("session").at("state"), "closed");
    EXPECT_EQ(json.at("session").at("closedMillis"), 1'700'000'020'000);
    EXPECT_EQ(json.at("chunks").size(), 2U);
    EXPECT_EQ(
        json.at("chunks").at(1),
        nlohmann::json::parse(R"({"number":1,"frames":5,"bytes":500,"durationMillis":2500,"endMillis":12,
                                        "receivedMillis":13,"events":1,"path":"/d/videos/b.mp4"})"));
    EXPECT_EQ(json.at("eventsByKind").at("SignalCaptured"), 1);
    EXPECT_EQ(json.at("signalsByKind").at("RageTap"), 1);
    EXPECT_EQ(json.at("timeline").at(0).dump(),
              R"({"chunkNumber":0,"timestamp":1,"type":"SessionStartMarker"})");
    EXPECT_EQ(json.at("timeline").at(1).at("eventDetails").at("x").dump(), "0.42");
    EXPECT_EQ(json.at("logLines").at(0).at("message"), "line\nbreak");
}

TEST(Reports, ListAsText) {
    std::ostringstream out;
    auto open = sample().summary;
    open.session.id = "a-longer-id";
    open.session.closedMillis = std::nullopt;
    writeListText(
        out,
        {.sessions = {sample().summary, open},
         .strayLogLines = {{.sessionId = {}, .receivedMillis = 0, .levelName = "info", .message = "m"}}});
    EXPECT_EQ(
        out.str(),
        "session      project         start                     state   chunks  frames   bytes  duration\n"
        "S1           b\\u{1B}[31m/p1  2023-11-14T22:13:20.123Z  closed       2      25  1.2 MB  12.500 s\n"
        "a-longer-id  b\\u{1B}[31m/p1  2023-11-14T22:13:20.123Z  open         2      25  1.2 MB  12.500 s\n"
        "\n"
        "Log lines without a known session:\n"
        "received                  level  message\n"
        "1970-01-01T00:00:00.000Z  info   m\n");
}

TEST(Reports, AnEmptyListSaysSo) {
    std::ostringstream text;
    writeListText(text, {});
    EXPECT_EQ(text.str(), "No sessions yet.\n");
    std::ostringstream json;
    writeListJson(json, {});
    EXPECT_EQ(json.str(), "{\"sessions\":[],\"logLines\":[]}\n");
}

TEST(Reports, ListAsJson) {
    std::ostringstream out;
    auto open = sample().summary;
    open.session.closedMillis = std::nullopt;
    writeListJson(out, {.sessions = {open}, .strayLogLines = {}});
    EXPECT_EQ(nlohmann::json::parse(out.str()).at("sessions").at(0).at("closedMillis"), nullptr);
    EXPECT_EQ(nlohmann::json::parse(out.str()).at("sessions").at(0).at("state"), "open");
}

}  // namespace
}  // namespace mireth::receiver
