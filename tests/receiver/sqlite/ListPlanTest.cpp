// What leads the way through the sessions. That the pages are right is tested over HTTP.
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
    }
    std::optional<ListPlan> planOf(const std::string& text) const {
        const Database database(directory_.file("data/receiver.db"), Database::Mode::read);
        return planList(database, {.text = text});
    }

    const TemporaryDirectory directory_;
    int names_ = 0;
};

// However short it is: looking for it in every session would take long.
TEST_F(ListPlanTest, ATextThatIsNowhereNeedsNoLook) {
    for (const auto* const text : {"z", "zq", "zqx", "cartx"}) {
        EXPECT_FALSE(planOf(text)) << text;
    }
}

TEST_F(ListPlanTest, TheSessionsOfFewTextsLead) {
    for (const auto* const text : {"o", "RT", "cart", "no st"}) {
        const auto plan = planOf(text);
        ASSERT_TRUE(plan) << text;
        EXPECT_NE(plan->sql.find("place IN (SELECT place FROM sessionText"), std::string::npos) << plan->sql;
    }
}

}  // namespace
}  // namespace mireth::receiver
