// What the list of sessions can be narrowed down by. Over HTTP, from a real store.
#include <gtest/gtest.h>

#include "sqlite/Database.hpp"
#include "support/SessionList.hpp"
#include "support/Timeline.hpp"

namespace mireth::receiver {
namespace {

using namespace test;

class SessionFilters : public SessionList {};

TEST_F(SessionFilters, FiltersByProject) {
    keep({.id = "a", .startMillis = 1, .projectId = "shop"});
    keep({.id = "b", .startMillis = 2, .projectId = "bank & co"});
    EXPECT_EQ(ids("?project=bank+%26+co"), Ids{"b"});
    EXPECT_EQ(ids("?project=ban"), Ids{});
    EXPECT_EQ(page("?project=shop").at("total"), nullptr);
}

TEST_F(SessionFilters, FiltersByTimeFromTheFirstUpToBeforeTheLast) {
    for (const std::int64_t start : {10, 20, 30}) {
        keep({.id = std::to_string(start), .startMillis = start});
    }
    EXPECT_EQ(ids("?from=20"), (Ids{"30", "20"}));
    EXPECT_EQ(ids("?to=20"), Ids{"10"});
    EXPECT_EQ(ids("?from=20&to=30"), Ids{"20"});
    EXPECT_EQ(ids("?from=-9223372036854775808&to=9223372036854775807"), (Ids{"30", "20", "10"}));
}

TEST_F(SessionFilters, FiltersBySignal) {
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

TEST_F(SessionFilters, FiltersByTheExactNameOfAScreen) {
    keep({.id = "a", .startMillis = 1, .chunks = {{screenEvent("Cart")}}});
    keep(
        {.id = "b", .startMillis = 2, .chunks = {{screenEvent("Carts")}, {signalEvent("ErrorTap", "Cart")}}});
    EXPECT_EQ(ids("?screen=Cart"), Ids{"a"});
    EXPECT_EQ(ids("?screen=cart"), Ids{});
}

TEST_F(SessionFilters, FindsTextInScreensAndErrorsInAnyCase) {
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

TEST_F(SessionFilters, ATextIsFoundByItsBeginning) {
    keep({.id = "S1", .chunks = {{signalEvent("ErrorTap", std::string(120, '.') + "needle" + "haystack")}}});
    EXPECT_EQ(ids("?text=needle"), Ids{"S1"});
    EXPECT_EQ(ids("?text=haystack"), Ids{});
    EXPECT_EQ(ids("?text=ys"), Ids{});
}

TEST_F(SessionFilters, TheTextsOfOneSessionAreFew) {
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

TEST_F(SessionFilters, EveryConditionMustHoldAndPagesGoOnUnderThem) {
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

TEST_F(SessionFilters, MoreThanManySessionsOfOneScreenAreStillFoundByTheRest) {
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
