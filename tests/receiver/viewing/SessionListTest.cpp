// The list of sessions: order, pages, filters, and what each line says. Over HTTP, from a real store.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "sqlite/Database.hpp"
#include "support/RunningReceiver.hpp"
#include "support/StoredSession.hpp"
#include "support/Timeline.hpp"

namespace mireth::receiver {
namespace {

using namespace test;
using Ids = std::vector<std::string>;
using nlohmann::json;

class SessionList : public testing::Test {
  protected:
    json page(const std::string& query = "") const { return receiver_.getJson("/api/sessions" + query); }
    Ids ids(const std::string& query = "") const {
        Ids all;
        const auto answer = page(query);
        for (const auto& session : answer.at("sessions")) {
            all.push_back(session.at("id"));
        }
        return all;
    }
    void keep(const StoredSession& session) { test::keep(receiver_.store(), session); }

    RunningReceiver receiver_;
};

TEST_F(SessionList, OfAnEmptyReceiverIsEmpty) {
    EXPECT_EQ(page(), json::parse(R"({"sessions":[],"next":null,"total":0})"));
    EXPECT_EQ(receiver_.getJson("/api/facets"),
              json::parse(R"({"projects":[],"screens":[],"moreScreens":false})"));
}

TEST_F(SessionList, SaysWhatASessionHolds) {
    keep({.id = "S1",
          .startMillis = 1'700'000'000'000,
          .projectId = "shop",
          .chunks = {{screenEvent("Cart"), metadataEvent("DeviceModel", "Phone"),
                      metadataEvent("OperatingSystem", "iOS 17.4"), tapEvent(), tapEvent()},
                     {screenEvent("Cart", "disappear"), screenEvent("Pay"), screenEvent("Cart"),
                      signalEvent("RageTap"), signalEvent("DeadTap"), signalEvent("DeadTap"),
                      signalEvent("ErrorTap", "no stock")}}});
    EXPECT_EQ(page(), json::parse(R"({"sessions":[{"id":"S1","brandId":"b1","projectId":"shop","state":"open",
        "startMillis":1700000000000,"lastMillis":1700000020000,"durationMillis":20000,
        "device":{"model":"Phone","system":"iOS 17.4"},"screens":["Cart","Pay"],"screenCount":2,
        "counts":{"taps":2,"rageTaps":1,"deadTaps":2,"errorTaps":1},"chunks":2,"missingChunks":0,"bytes":10}],
        "next":null,"total":1})"));
    receiver_.closeSession("S1", "b1", "shop");
    EXPECT_EQ(page().at("sessions").at(0).at("state"), "closed");
    EXPECT_EQ(receiver_.getJson("/api/facets"),
              json::parse(R"({"projects":["shop"],"screens":["Cart","Pay"],"moreScreens":false})"));
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

TEST_F(SessionList, FiltersByProject) {
    keep({.id = "a", .startMillis = 1, .projectId = "shop"});
    keep({.id = "b", .startMillis = 2, .projectId = "bank & co"});
    EXPECT_EQ(ids("?project=bank+%26+co"), Ids{"b"});
    EXPECT_EQ(ids("?project=ban"), Ids{});
    EXPECT_EQ(page("?project=shop").at("total"), nullptr);
}

TEST_F(SessionList, FiltersByTimeFromTheFirstUpToBeforeTheLast) {
    for (const std::int64_t start : {10, 20, 30}) {
        keep({.id = std::to_string(start), .startMillis = start});
    }
    EXPECT_EQ(ids("?from=20"), (Ids{"30", "20"}));
    EXPECT_EQ(ids("?to=20"), Ids{"10"});
    EXPECT_EQ(ids("?from=20&to=30"), Ids{"20"});
    EXPECT_EQ(ids("?from=-9223372036854775808&to=9223372036854775807"), (Ids{"30", "20", "10"}));
}

TEST_F(SessionList, FiltersBySignal) {
    keep({.id = "none", .startMillis = 1, .chunks = {{}}});
    keep({.id = "tap", .startMillis = 2, .chunks = {{tapEvent()}}});
    keep({.id = "rage", .startMillis = 3, .chunks = {{signalEvent("RageTap")}}});
    keep({.id = "dead", .startMillis = 4, .chunks = {{signalEvent("DeadTap")}}});
    keep({.id = "error", .startMillis = 5, .chunks = {{signalEvent("ErrorTap")}, {tapEvent()}}});
    EXPECT_EQ(ids("?signal=tap"), (Ids{"error", "tap"}));
    EXPECT_EQ(ids("?signal=rageTap"), Ids{"rage"});
    EXPECT_EQ(ids("?signal=deadTap"), Ids{"dead"});
    EXPECT_EQ(ids("?signal=errorTap"), Ids{"error"});
}

TEST_F(SessionList, FiltersByTheExactNameOfAScreen) {
    keep({.id = "a", .startMillis = 1, .chunks = {{screenEvent("Cart")}}});
    keep(
        {.id = "b", .startMillis = 2, .chunks = {{screenEvent("Carts")}, {signalEvent("ErrorTap", "Cart")}}});
    EXPECT_EQ(ids("?screen=Cart"), Ids{"a"});
    EXPECT_EQ(ids("?screen=cart"), Ids{});
}

TEST_F(SessionList, FindsTextInScreensAndErrorsInAnyCase) {
    keep({.id = "screen", .startMillis = 1, .chunks = {{screenEvent("CartViewController")}}});
    keep({.id = "error", .startMillis = 2, .chunks = {{signalEvent("ErrorTap", "The CART is 100% full")}}});
    keep({.id = "greek", .startMillis = 3, .chunks = {{screenEvent("ΚΑΛΆΘΙ_1")}}});
    EXPECT_EQ(ids("?text=cart"), (Ids{"error", "screen"}));
    EXPECT_EQ(ids("?text=TVIEWC"), Ids{"screen"});
    EXPECT_EQ(ids("?text=100%25"), Ids{"error"});
    EXPECT_EQ(ids("?text=0_f"), Ids{});
    EXPECT_EQ(ids("?text=%25"), Ids{"error"});
    EXPECT_EQ(ids("?text=c"), (Ids{"error", "screen"}));
    EXPECT_EQ(ids("?text=%CE%BA%CE%B1%CE%BB%CE%AC%CE%B8%CE%B9"), Ids{"greek"});
    EXPECT_EQ(ids("?text=nowhere"), Ids{});
    // Not across two texts of one session.
    EXPECT_EQ(ids("?text=CartViewControllerThe"), Ids{});
}

TEST_F(SessionList, ATextIsFoundByItsBeginning) {
    keep({.id = "S1", .chunks = {{signalEvent("ErrorTap", std::string(120, '.') + "needle" + "haystack")}}});
    EXPECT_EQ(ids("?text=needle"), Ids{"S1"});
    EXPECT_EQ(ids("?text=haystack"), Ids{});
    EXPECT_EQ(ids("?text=ys"), Ids{});
}

TEST_F(SessionList, TheTextsOfOneSessionAreFew) {
    std::vector<std::vector<TimelineEvent>> chunks(4);
    for (int i = 0; i < 4 * 100; ++i) {
        const auto name = std::to_string(i) + std::string(250, 'x');
        chunks[static_cast<std::size_t>(i) / 100].push_back(i % 2 == 0 ? screenEvent(name)
                                                                       : signalEvent("ErrorTap", name));
    }
    keep({.id = "S1", .chunks = std::move(chunks)});
    const Database database(receiver_.data() + "/receiver.db", Database::Mode::read);
    const auto count = [&](const std::string& from) {
        auto row = database.prepare("SELECT count(*) FROM " + from);
        row.step();
        return row.whole(0);
    };
    EXPECT_EQ(count("text WHERE kind = 0"), 100);
    EXPECT_EQ(count("text WHERE kind = 1"), 50);
    EXPECT_LE(count("gram"), 150 * 126);
    // Another session's are its own.
    keep({.id = "S2", .startMillis = 5, .chunks = {{screenEvent("Cart")}}});
    EXPECT_EQ(ids("?screen=Cart"), Ids{"S2"});
}

TEST_F(SessionList, EveryConditionMustHoldAndPagesGoOnUnderThem) {
    for (int i = 0; i < 30; ++i) {
        std::vector<TimelineEvent> events{screenEvent(i % 2 == 0 ? "Even" : "Odd")};
        if (i % 3 == 0) {
            events.push_back(signalEvent("RageTap"));
        }
        keep({.id = std::to_string(i),
              .startMillis = i,
              .projectId = i < 20 ? "p1" : "p2",
              .chunks = {std::move(events)}});
    }
    const std::string query = "?screen=Even&signal=rageTap&project=p1&from=1&text=eve&limit=2";
    EXPECT_EQ(ids(query), (Ids{"18", "12"}));
    const std::string next = page(query).at("next");
    EXPECT_EQ(ids(query + "&cursor=" + next), Ids{"6"});
    EXPECT_EQ(page(query + "&cursor=" + next).at("next"), nullptr);
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

TEST_F(SessionList, MoreThanManySessionsOfOneScreenAreStillFoundByTheRest) {
    // More than are counted before a walk is taken to be cheaper. Straight into the tables: one by one they
    // would take minutes.
    keep({.id = "7",
          .startMillis = 7,
          .chunks = {{screenEvent("Everywhere"), signalEvent("ErrorTap", "the one and only")}}});
    Database(receiver_.data() + "/receiver.db", Database::Mode::write).execute(R"sql(
        WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 5199)
        INSERT INTO session(place, id, brandId, brandDc, projectId, isTestSession, startMillis, lastMillis)
        SELECT i * 4096, i, 'b1', 'd', 'p1', 0, i, i FROM n WHERE i <> 7;
        INSERT INTO sessionText SELECT place, (SELECT id FROM text WHERE value = 'Everywhere'), 0, 0
        FROM session WHERE id <> '7')sql");
    EXPECT_EQ(ids("?screen=Everywhere&limit=2"), (Ids{"5199", "5198"}));
    EXPECT_EQ(ids("?text=everywhere&limit=1"), Ids{"5199"});
    EXPECT_EQ(ids("?text=everywhere&limit=1&signal=errorTap"), Ids{"7"});
    EXPECT_EQ(ids("?text=only&screen=Everywhere"), Ids{"7"});
    EXPECT_EQ(ids("?screen=Everywhere&to=3"), (Ids{"2", "1", "0"}));
}

}  // namespace
}  // namespace mireth::receiver
