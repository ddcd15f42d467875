// The budgets of log lines, of sessions and of projects.
#include <gtest/gtest.h>

#include "support/StoreTest.hpp"

namespace mireth::receiver {
namespace {

class SqliteLogLines : public test::StoreTest {};

TEST_F(SqliteLogLines, LogLinesHaveABudgetPerSession) {
    const auto store = open();
    addSession(*store);
    Limits oneLine;
    oneLine.logLines = 1;
    EXPECT_EQ(store->addLogLine({.sessionId = "S1", .levelName = "info", .message = "1"}, oneLine),
              LineOutcome::kept);
    EXPECT_EQ(store->addLogLine({.sessionId = "S1", .levelName = "info", .message = "2"}, oneLine),
              LineOutcome::full);
    EXPECT_EQ(store->addLogLine({.sessionId = {}, .levelName = "info", .message = "3"}, oneLine),
              LineOutcome::kept);
    EXPECT_EQ(store->addLogLine({.sessionId = {}, .levelName = "info", .message = "4"}, oneLine),
              LineOutcome::full);
    EXPECT_EQ(store->addLogLine({.sessionId = "S2", .levelName = "info", .message = "5"}, oneLine),
              LineOutcome::unknown);
    EXPECT_EQ(store->contents("S1")->value().logLines.size(), 1U);
    EXPECT_EQ(store->strayLogLines()->size(), 1U);
}

TEST_F(SqliteLogLines, LogLinesWithoutASessionHaveABudgetPerProject) {
    Limits limits;
    limits.logLines = 2;
    limits.logBytes = 10;
    const auto line = [](const std::string& project, std::string message, std::int64_t millis = 0) {
        return LogLine{.sessionId = {},
                       .receivedMillis = millis,
                       .levelName = "info",
                       .message = std::move(message),
                       .brandId = "b",
                       .projectId = project};
    };
    {
        const auto store = open();
        EXPECT_EQ(store->addLogLine(line("p", "1"), limits), LineOutcome::kept);
        EXPECT_EQ(store->addLogLine(line("p", "2", 9), limits), LineOutcome::kept);
        EXPECT_EQ(store->addLogLine(line("p", "3"), limits), LineOutcome::full);
        // Bytes, not characters.
        EXPECT_EQ(store->addLogLine(line("q", "\u00e4\u00e4\u00e4\u00e4\u00e4"), limits), LineOutcome::kept);
        EXPECT_EQ(store->addLogLine(line("q", "1"), limits), LineOutcome::full);
    }
    const auto store = open();
    EXPECT_EQ(store->addLogLine(line("p", "3"), limits), LineOutcome::full);
    EXPECT_EQ(store->addLogLine(line("q", "1"), limits), LineOutcome::full);
    ASSERT_TRUE(store->removeStrayLogLines(5));
    EXPECT_EQ(store->addLogLine(line("q", "1"), limits), LineOutcome::kept);
    EXPECT_EQ(store->addLogLine(line("p", "3"), limits), LineOutcome::kept);
    EXPECT_EQ(store->addLogLine(line("p", "4"), limits), LineOutcome::full);
}

TEST_F(SqliteLogLines, ALogLineBeyondItsBudgetWaitsForNobodyWhoWrites) {
    const auto store = open();
    addSession(*store);
    Limits one;
    one.logLines = 1;
    ASSERT_EQ(store->addLogLine({.sessionId = "S1", .levelName = "info", .message = "1"}, one),
              LineOutcome::kept);
    ASSERT_EQ(store->addLogLine({.sessionId = {}, .levelName = "info", .message = "1"}, one),
              LineOutcome::kept);
    const Database other(data_ + "/receiver.db", Database::Mode::write);
    const Transaction inTheWay(other, Transaction::Kind::write);
    EXPECT_EQ(store->addLogLine({.sessionId = "S1", .levelName = "info", .message = "2"}, one),
              LineOutcome::full);
    EXPECT_EQ(store->addLogLine({.sessionId = {}, .levelName = "info", .message = "2"}, one),
              LineOutcome::full);
}

}  // namespace
}  // namespace mireth::receiver
