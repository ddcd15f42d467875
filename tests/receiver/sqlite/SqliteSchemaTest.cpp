// Data folders that earlier receivers wrote: brought up to date without loss, or left as they are.
#include "sqlite/SqliteSchema.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "sqlite/SqliteStore.hpp"
#include "support/EarlierSchema.hpp"
#include "support/StoredSession.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/Timeline.hpp"

namespace mireth::receiver {
namespace {

using test::firstVersion2;
using test::keepChunk;
using test::rowsOfVersion2;
using test::screenEvent;

class SqliteSchemaTest : public testing::Test {
  protected:
    SqliteSchemaTest() { std::filesystem::create_directories(data_ + "/videos"); }

    Database database() const { return {data_ + "/receiver.db", Database::Mode::write}; }
    void writeFirstVersion2() const {
        const auto earlier = database();
        earlier.execute(firstVersion2);
        earlier.execute(rowsOfVersion2);
        std::ofstream(data_ + "/videos/v0.mp4") << "first";
        std::ofstream(data_ + "/videos/v1.mp4") << "other";
    }
    std::unique_ptr<SqliteStore> open() const {
        auto store =
            SqliteStore::open(data_, [count = 0]() mutable { return "new-" + std::to_string(++count); });
        EXPECT_TRUE(store) << store.error();
        return store ? std::move(*store) : nullptr;
    }
    std::string errorOfOpening() const {
        const auto store = SqliteStore::open(data_, [] { return "video"; });
        return store ? "" : store.error();
    }
    std::int64_t number(const std::string& sql) const {
        const auto now = database();
        auto row = now.prepare(sql);
        return row.step() ? row.whole(0) : -1;
    }
    static std::vector<std::string> found(SqliteStore& store, const std::string& text) {
        std::vector<std::string> ids;
        const auto page = store.list({.text = text});
        EXPECT_TRUE(page) << page.error();
        for (const auto& each : page ? page->sessions : std::vector<SessionSummary>{}) {
            ids.push_back(each.session.id);
        }
        return ids;
    }
    std::string broken(const std::string& why) const {
        return "cannot open the database " + data_ + "/receiver.db: " + why;
    }

    using Ids = std::vector<std::string>;
    const test::TemporaryDirectory directory_;
    const std::string data_ = directory_.file("data");
};

TEST_F(SqliteSchemaTest, WhatTheFirstVersion2HeldIsAllThere) {
    writeFirstVersion2();
    const auto store = open();
    ASSERT_TRUE(store);
    EXPECT_EQ(store->sweptVideos(), 0);
    const auto contents = store->contents("S1").value();
    ASSERT_TRUE(contents);
    EXPECT_EQ(contents->summary.chunks, 2);
    EXPECT_EQ(contents->summary.deviceModel, "Phone");
    EXPECT_EQ(contents->summary.screens, (Ids{"Übersicht", "A"}));
    ASSERT_EQ(contents->chunks.size(), 2U);
    EXPECT_EQ(contents->chunks[0].timeline, "[\"ä\"]");
    EXPECT_EQ(contents->logLines.size(), 1U);
    EXPECT_EQ(store->findVideo("S1", 1).value()->digest, "d1");
    EXPECT_EQ(store->list({})->sessions.size(), 2U);
}

TEST_F(SqliteSchemaTest, TextsOfTheFirstVersion2AreFoundInAnyCase) {
    writeFirstVersion2();
    const auto store = open();
    ASSERT_TRUE(store);
    EXPECT_EQ(found(*store, "DECLINED"), Ids{"S1"});
    EXPECT_EQ(found(*store, "über"), Ids{"S1"});
    EXPECT_EQ(found(*store, "a"), Ids{"S1"});
    EXPECT_EQ(found(*store, "approved"), Ids{});
}

TEST_F(SqliteSchemaTest, SessionsOfTheFirstVersion2GrowAndGoLikeAnyOther) {
    writeFirstVersion2();
    const auto store = open();
    ASSERT_TRUE(store);
    keepChunk(*store, "S1", 2, {screenEvent("Basket")}, 20);
    EXPECT_EQ(found(*store, "basket"), Ids{"S1"});
    EXPECT_EQ(store->removeSessions({"S1"}), 1);
    EXPECT_EQ(found(*store, "declined"), Ids{});
    EXPECT_EQ(number("SELECT count(*) FROM text"), 0);
    EXPECT_EQ(number("SELECT count(*) FROM gram"), 0);
    EXPECT_FALSE(std::filesystem::exists(data_ + "/videos/v0.mp4"));
}

TEST_F(SqliteSchemaTest, TimelinesOfTheFirstVersion2CountAgainstTheirSessionsBytes) {
    writeFirstVersion2();
    ASSERT_TRUE(open());
    // In bytes, not in characters.
    EXPECT_EQ(number("SELECT timelineBytes FROM session WHERE id = 'S1'"), 8);
    EXPECT_EQ(number("SELECT timelineBytes FROM session WHERE id = 'S2'"), 0);
}

TEST_F(SqliteSchemaTest, LengthsOfAnEarlierVersionAreThoseOfTheirReplays) {
    writeFirstVersion2();
    database().execute(
        "UPDATE chunk SET durationMillis = 4000 WHERE number = 0;"
        "UPDATE chunk SET durationMillis = 14000 WHERE number = 1;"
        "UPDATE session SET durationMillis = 18000 WHERE id = 'S1'");
    ASSERT_TRUE(open());
    EXPECT_EQ(number("SELECT durationMillis FROM session WHERE id = 'S1'"), 20'000);
    EXPECT_EQ(number("SELECT durationMillis FROM session WHERE id = 'S2'"), 0);
}

TEST_F(SqliteSchemaTest, LengthsOfVersion3AreThoseOfTheirReplays) {
    {
        const auto store = open();
        test::keep(*store, {.id = "S1"});
        keepChunk(*store, "S1", 2, {}, 20);
    }
    database().execute("UPDATE session SET durationMillis = 10000; PRAGMA user_version = 3");
    const auto store = open();
    ASSERT_TRUE(store);
    EXPECT_EQ(store->summary("S1").value()->durationMillis, 30'000);
}

TEST_F(SqliteSchemaTest, ALaterVersion2LacksNothingButItsNumber) {
    {
        const auto store = open();
        test::keep(*store, {.id = "S1", .chunks = {{screenEvent("Basket")}}});
    }
    database().execute("PRAGMA user_version = 2");
    const auto store = open();
    ASSERT_TRUE(store);
    EXPECT_EQ(found(*store, "basket"), Ids{"S1"});
    EXPECT_EQ(number("PRAGMA user_version"), 5);
}

TEST_F(SqliteSchemaTest, LogLinesOfVersion4AreNobodysInParticular) {
    Limits two;
    two.logLines = 2;
    const LogLine line{.sessionId = {}, .levelName = "info", .message = "old"};
    {
        const auto store = open();
        ASSERT_EQ(store->addLogLine(line, two), LineOutcome::kept);
    }
    database().execute(
        "ALTER TABLE logLine DROP COLUMN brandId; ALTER TABLE logLine DROP COLUMN projectId;"
        "PRAGMA user_version = 4");
    const auto store = open();
    ASSERT_TRUE(store);
    ASSERT_EQ(store->strayLogLines()->size(), 1U);
    EXPECT_EQ(store->addLogLine(line, two), LineOutcome::kept);
    EXPECT_EQ(store->addLogLine(line, two), LineOutcome::full);
}

TEST_F(SqliteSchemaTest, WhatCannotBeBroughtUpToDateIsLeftAsItWas) {
    writeFirstVersion2();
    database().execute("DROP TABLE chunk");
    EXPECT_EQ(errorOfOpening(), broken("no such table: chunk"));
    EXPECT_EQ(number("PRAGMA user_version"), 2);
    EXPECT_EQ(number("SELECT count(*) FROM textSearch WHERE textSearch MATCH 'declined'"), 1);
}

TEST_F(SqliteSchemaTest, WhoOnlyReadsIsToldToServeFirst) {
    writeFirstVersion2();
    const auto reader = SqliteStore::openForReading(data_);
    ASSERT_FALSE(reader);
    EXPECT_EQ(reader.error(),
              broken("it was written by an older receiver; serve from it once to bring it up to date"));
    ASSERT_TRUE(open());
    EXPECT_TRUE(SqliteStore::openForReading(data_));
}

TEST_F(SqliteSchemaTest, Version1IsLeftAlone) {
    database().execute("CREATE TABLE event(id INTEGER); PRAGMA user_version = 1");
    EXPECT_EQ(errorOfOpening(), broken("it was written by an older receiver, whose form is no longer read"));
    EXPECT_EQ(number("PRAGMA user_version"), 1);
    const auto reader = SqliteStore::openForReading(data_);
    ASSERT_FALSE(reader);
    EXPECT_EQ(reader.error(), broken("it was written by an older receiver, whose form is no longer read"));
}

}  // namespace
}  // namespace mireth::receiver
