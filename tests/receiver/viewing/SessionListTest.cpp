// The list of sessions: order, pages, and what each line says. Over HTTP, from a real store.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/SessionList.hpp"
#include "support/Timeline.hpp"

namespace mireth::receiver {
namespace {

using namespace test;
using nlohmann::json;

TEST_F(SessionList, OfAnEmptyReceiverIsEmpty) {
    EXPECT_EQ(page(), json::parse(R"({"sessions":[],"next":null,"total":0})"));
    EXPECT_EQ(receiver_.getJson("/api/facets"),
              json::parse(R"({"projects":[],"screens":[],"moreScreens":false})"));
}

TEST_F(SessionList, SaysWhatASessionHolds) {
    keep({.id = "S1",
          .startMillis = 1'700'000'000'000,
          .projectId = "shop",
          .chunks = {
              {screenEvent("Shop", "disappear"), screenEvent("Cart"), metadataEvent("DeviceModel", "Phone"),
               metadataEvent("OperatingSystem", "iOS 17.4"), tapEvent(), tapEvent()},
              {screenEvent("Cart", "disappear"), screenEvent("Pay"), screenEvent("Cart"),
               signalEvent("RageTap"), signalEvent("DeadTap"), signalEvent("DeadTap"),
               signalEvent("ErrorTap", "no stock")}}});
    EXPECT_EQ(page(), json::parse(R"({"sessions":[{"id":"S1","brandId":"b1","projectId":"shop","state":"open",
        "startMillis":1700000000000,"lastMillis":1700000020000,"durationMillis":20000,
        "device":{"model":"Phone","system":"iOS 17.4"},"screens":["Shop","Cart","Pay"],"screenCount":3,
        "counts":{"taps":2,"rageTaps":1,"deadTaps":2,"errorTaps":1},"chunks":2,"missingChunks":0,"bytes":10}],
        "next":null,"total":1})"));
    receiver_.closeSession("S1", "b1", "shop");
    EXPECT_EQ(page().at("sessions").at(0).at("state"), "closed");
    EXPECT_EQ(receiver_.getJson("/api/facets"),
              json::parse(R"({"projects":["shop"],"screens":["Cart","Pay","Shop"],"moreScreens":false})"));
}

TEST_F(SessionList, SaysSoWhereThereAreMoreScreensThanItNames) {
    keep({.id = "S1"});
    for (int part = 0; part < 20; ++part) {
        std::vector<TimelineEvent> events;
        for (int i = 0; i < 50; ++i) {
            events.push_back(screenEvent("Screen " + std::to_string(part * 50 + i)));
        }
        keep({.id = "T" + std::to_string(part), .chunks = {events}});
    }
    auto facets = receiver_.getJson("/api/facets");
    EXPECT_EQ(facets.at("screens").size(), 1000U);
    EXPECT_EQ(facets.at("moreScreens"), false);
    keepChunk(receiver_.store(), "S1", 0, {screenEvent("One more")}, 5);
    facets = receiver_.getJson("/api/facets");
    EXPECT_EQ(facets.at("screens").size(), 1000U);
    EXPECT_EQ(facets.at("moreScreens"), true);
}

TEST_F(SessionList, MissingChunksKeepTheirTime) {
    keep({.id = "S1"});
    keepChunk(receiver_.store(), "S1", 1, {}, 5);
    keepChunk(receiver_.store(), "S1", 4, {}, 5);
    const auto session = page().at("sessions").at(0);
    EXPECT_EQ(session.at("chunks"), 2);
    EXPECT_EQ(session.at("missingChunks"), 3);
    EXPECT_EQ(session.at("durationMillis"), 50'000);
}

TEST_F(SessionList, AChunkLongerThanTenSecondsTakesNoMore) {
    const auto id = receiver_.createSession();
    receiver_.put(chunkUpload(id, 1, mp4({.duration = 8400})));
    EXPECT_EQ(page().at("sessions").at(0).at("durationMillis"), 20'000);
    // One before it, come late, makes the session no longer.
    receiver_.put(chunkUpload(id, 0, mp4({.duration = 2400})));
    EXPECT_EQ(page().at("sessions").at(0).at("durationMillis"), 20'000);
}

TEST_F(SessionList, ScreensStandInTheOrderOfTheTimelineWhateverOrderTheChunksCameIn) {
    keep({.id = "S1"});
    keepChunk(receiver_.store(), "S1", 1, {screenEvent("Second"), screenEvent("Third")}, 5);
    keepChunk(receiver_.store(), "S1", 0, {screenEvent("First"), screenEvent("Third")}, 6);
    EXPECT_EQ(page().at("sessions").at(0).at("screens"), (Ids{"First", "Third", "Second"}));
}

TEST_F(SessionList, HoldsTheFirstTenScreensAndHowManyThereAre) {
    std::vector<TimelineEvent> events;
    Ids first;
    for (int i = 0; i < 12; ++i) {
        events.push_back(screenEvent("Screen " + std::to_string(i)));
        first.push_back("Screen " + std::to_string(i));
    }
    first.resize(10);
    keep({.id = "S1", .chunks = {events}});
    const auto session = page().at("sessions").at(0);
    EXPECT_EQ(session.at("screens"), first);
    EXPECT_EQ(session.at("screenCount"), 12);
    EXPECT_EQ(ids("?screen=Screen+11"), Ids{"S1"});
}

TEST_F(SessionList, TheLastStartedComesFirstAndSessionsOfOneMillisecondInTurn) {
    keep({.id = "old", .startMillis = 10});
    keep({.id = "new", .startMillis = 30});
    keep({.id = "one", .startMillis = 20});
    keep({.id = "two", .startMillis = 20});
    EXPECT_EQ(ids(), (Ids{"new", "two", "one", "old"}));
}

TEST_F(SessionList, PagesNeitherSkipNorRepeatWhenSessionsComeInMeanwhile) {
    for (int i = 0; i < 5; ++i) {
        keep({.id = std::to_string(i), .startMillis = 100 + i});
    }
    const auto first = page("?limit=2");
    EXPECT_EQ(ids("?limit=2"), (Ids{"4", "3"}));
    EXPECT_EQ(first.at("total"), 5);
    keep({.id = "later", .startMillis = 1000});
    const std::string next = first.at("next");
    EXPECT_EQ(ids("?limit=2&cursor=" + next), (Ids{"2", "1"}));
    const std::string last = page("?limit=2&cursor=" + next).at("next");
    EXPECT_EQ(ids("?limit=2&cursor=" + last), (Ids{"0"}));
    EXPECT_EQ(page("?limit=2&cursor=" + last).at("next"), nullptr);
    // A page that is just full is the last when nothing follows.
    EXPECT_EQ(page("?limit=6").at("next"), nullptr);
}

TEST_F(SessionList, RefusesAQueryThatCannotBeRead) {
    for (const auto& [query, why] : std::vector<std::pair<std::string, std::string>>{
             {"limit=0", "limit must be from 1 to 200"},
             {"limit=201", "limit must be from 1 to 200"},
             {"limit=x", "limit is no whole number"},
             {"cursor=1x", "cursor is no whole number"},
             {"from=1e3", "from is no whole number"},
             {"to=99999999999999999999", "to is no whole number"},
             {"signal=swipe", "signal must be tap, rageTap, deadTap or errorTap"},
             {"text=%FF", "text is too long or no text"},
             {"project=" + std::string(1025, 'x'), "project is too long or no text"}}) {
        const auto response = receiver_.get("/api/sessions?" + query);
        EXPECT_EQ(response.status, 400) << query;
        EXPECT_EQ(json::parse(response.body).at("error"), why) << query;
    }
    EXPECT_EQ(page("?text=&project=&cursor=&other=1").at("sessions"), json::array());
}

TEST_F(SessionList, IsNotSentAgainWhenNothingChanged) {
    keep({.id = "S1", .chunks = {{}}});
    const auto first = receiver_.get("/api/sessions");
    const auto header = "If-None-Match: " + first.header("etag") + "\r\n";
    const auto second = receiver_.get("/api/sessions", header);
    EXPECT_EQ(second.status, 304);
    EXPECT_EQ(second.body, "");
    EXPECT_EQ(second.header("etag"), first.header("etag"));
    EXPECT_EQ(receiver_.get("/api/facets", header).status, 304);
    keepChunk(receiver_.store(), "S1", 1, {}, 5);
    EXPECT_EQ(receiver_.get("/api/sessions", header).status, 200);
    // A tag of an earlier run says nothing of this one.
    const auto third = receiver_.get("/api/sessions").header("etag");
    receiver_.restart();
    EXPECT_EQ(receiver_.get("/api/sessions", "If-None-Match: " + third + "\r\n").status, 200);
}

}  // namespace
}  // namespace mireth::receiver
