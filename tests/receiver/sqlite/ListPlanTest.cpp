// What drives the query for a page. That the pages are right is tested over HTTP.
#include "sqlite/ListPlan.hpp"

#include <gtest/gtest.h>

#include "sqlite/SqliteStore.hpp"
#include "support/StoredSession.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/Timeline.hpp"

namespace mireth::receiver {
namespace {

using namespace test;

class ListPlanTest : public testing::Test {
  protected:
    ListPlanTest() {
        const auto store = std::move(
            SqliteStore::open(directory_.file("data"), [this] { return std::to_string(++names_); }).value());
        keep(*store, {.id = "S1", .chunks = {{screenEvent("Cart"), signalEvent("ErrorTap", "No stock")}}});
        keep(*store, {.id = "S2", .chunks = {{screenEvent("Home")}}});
    }
    std::optional<ListPlan> planOf(const SessionQuery& query) const {
        const Database database(directory_.file("data/receiver.db"), Database::Mode::read);
        return planList(database, query);
    }

    const TemporaryDirectory directory_;
    int names_ = 0;
};

// However short it is: looking for it in every session would take long.
TEST_F(ListPlanTest, ATextThatIsNowhereNeedsNoLook) {
    for (const auto* const text : {"z", "zq", "zqx", "cartx"}) {
        EXPECT_FALSE(planOf({.text = text})) << text;
    }
}

TEST_F(ListPlanTest, TheSessionsOfFewTextsDrive) {
    for (const auto* const text : {"o", "RT", "cart", "no st"}) {
        const auto plan = planOf({.text = text});
        ASSERT_TRUE(plan) << text;
        EXPECT_NE(plan->sql.find("place IN (SELECT place FROM sessionText"), std::string::npos) << plan->sql;
    }
}

TEST_F(ListPlanTest, WhatNamesFewerSessionsDrivesAndTheOtherIsChecked) {
    const auto byText = planOf({.projectId = "p1", .text = "cart"});
    ASSERT_TRUE(byText);
    EXPECT_EQ(byText->sql,
              " WHERE place < ? AND place >= ? AND projectId = ? AND place IN (SELECT place FROM sessionText"
              " WHERE textId IN (SELECT value FROM json_each(?)))");
    const auto bySignal = planOf({.projectId = "p1", .signal = Signal::errorTap});
    ASSERT_TRUE(bySignal);
    EXPECT_EQ(bySignal->sql,
              " INDEXED BY sessionWithErrorTap WHERE place < ? AND place >= ? AND errorTaps > 0"
              " AND projectId = ?");
    const auto byProject = planOf({.projectId = "none", .text = "cart"});
    ASSERT_TRUE(byProject);
    EXPECT_EQ(byProject->sql,
              " INDEXED BY sessionByProject WHERE place < ? AND place >= ? AND projectId = ? AND EXISTS"
              " (SELECT 1 FROM sessionText WHERE sessionText.place = session.place AND +textId IN"
              " (SELECT value FROM json_each(?)))");
    ASSERT_EQ(byProject->values.size(), 4U);
    EXPECT_EQ(byProject->values[2], SqlValue("none"));
    EXPECT_EQ(std::get<std::string>(byProject->values[3]).front(), '[');
}

TEST_F(ListPlanTest, WhatNearlyEverySessionHasIsOnlyChecked) {
    const auto plan = planOf({.signal = Signal::tap});
    ASSERT_TRUE(plan);
    EXPECT_EQ(plan->sql, " NOT INDEXED WHERE place < ? AND place >= ? AND taps > 0");
}

}  // namespace
}  // namespace mireth::receiver
