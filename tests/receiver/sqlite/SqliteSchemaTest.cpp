// Data folders that earlier receivers wrote: brought up to date without loss, or left as they are.
#include "sqlite/SqliteSchema.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "sqlite/SqliteStore.hpp"
#include "support/StoredSession.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/Timeline.hpp"

namespace mireth::receiver {
namespace {

using test::keepChunk;
using test::screenEvent;

// Version 2 as it was at first: texts were found by a full-text index, and nothing summed the timelines.
constexpr const char* firstVersion2 = R"sql(
CREATE TABLE session (
    place INTEGER PRIMARY KEY,
    id TEXT NOT NULL UNIQUE,
    brandId TEXT NOT NULL,
    brandDc TEXT NOT NULL,
    projectId TEXT NOT NULL,
    isTestSession INTEGER NOT NULL,
    startMillis INTEGER NOT NULL,
    closedMillis INTEGER,
    lastMillis INTEGER NOT NULL,
    chunks INTEGER NOT NULL DEFAULT 0,
    highestChunk INTEGER NOT NULL DEFAULT -1,
    frames INTEGER NOT NULL DEFAULT 0,
    bytes INTEGER NOT NULL DEFAULT 0,
    durationMillis INTEGER NOT NULL DEFAULT 0,
    events INTEGER NOT NULL DEFAULT 0,
    logLines INTEGER NOT NULL DEFAULT 0,
    logBytes INTEGER NOT NULL DEFAULT 0,
    taps INTEGER NOT NULL DEFAULT 0,
    rageTaps INTEGER NOT NULL DEFAULT 0,
    deadTaps INTEGER NOT NULL DEFAULT 0,
    errorTaps INTEGER NOT NULL DEFAULT 0,
    deviceModel TEXT NOT NULL DEFAULT '',
    deviceSystem TEXT NOT NULL DEFAULT ''
);
CREATE INDEX sessionByProject ON session(projectId, place);
CREATE INDEX sessionWithRageTap ON session(place, projectId) WHERE rageTaps > 0;
CREATE INDEX sessionWithDeadTap ON session(place, projectId) WHERE deadTaps > 0;
CREATE INDEX sessionWithErrorTap ON session(place, projectId) WHERE errorTaps > 0;
CREATE TABLE chunk (
    place INTEGER NOT NULL REFERENCES session(place),
    number INTEGER NOT NULL,
    endMillis INTEGER NOT NULL,
    receivedMillis INTEGER NOT NULL,
    bytes INTEGER NOT NULL,
    frames INTEGER NOT NULL,
    durationMillis INTEGER NOT NULL,
    video TEXT NOT NULL UNIQUE,
    digest TEXT NOT NULL,
    events INTEGER NOT NULL,
    timeline TEXT NOT NULL,
    PRIMARY KEY (place, number)
);
CREATE TABLE logLine (
    id INTEGER PRIMARY KEY,
    place INTEGER REFERENCES session(place),
    receivedMillis INTEGER NOT NULL,
    levelName TEXT NOT NULL,
    message TEXT NOT NULL
);
CREATE INDEX logLineBySession ON logLine(place, id);
CREATE TABLE text (
    id INTEGER PRIMARY KEY,
    kind INTEGER NOT NULL,
    value TEXT NOT NULL,
    UNIQUE (kind, value)
);
CREATE VIRTUAL TABLE textSearch USING fts5(value, content='text', content_rowid='id', tokenize='trigram');
CREATE TRIGGER textAdded AFTER INSERT ON text BEGIN
    INSERT INTO textSearch(rowid, value) VALUES (new.id, new.value);
END;
CREATE TRIGGER textGone AFTER DELETE ON text BEGIN
    INSERT INTO textSearch(textSearch, rowid, value) VALUES ('delete', old.id, old.value);
END;
CREATE TABLE sessionText (
    place INTEGER NOT NULL REFERENCES session(place),
    textId INTEGER NOT NULL REFERENCES text(id),
    chunkNumber INTEGER NOT NULL,
    position INTEGER NOT NULL,
    PRIMARY KEY (place, textId)
) WITHOUT ROWID;
CREATE INDEX sessionByText ON sessionText(textId, place);
PRAGMA user_version = 2;
)sql";

constexpr const char* rowsOfVersion2 = R"sql(
INSERT INTO session(place, id, brandId, brandDc, projectId, isTestSession, startMillis, lastMillis, chunks,
    highestChunk, frames, bytes, durationMillis, events, logLines, logBytes, taps, deviceModel)
    VALUES (4096, 'S1', 'b1', 'd', 'p1', 0, 1, 9, 2, 1, 40, 10, 20000, 3, 1, 4, 1, 'Phone'),
           (8192, 'S2', 'b1', 'd', 'p1', 0, 2, 2, 0, -1, 0, 0, 0, 0, 0, 0, 0, '');
INSERT INTO chunk VALUES (4096, 0, 3, 3, 5, 20, 10000, 'v0.mp4', 'd0', 2, '["ä"]'),
                         (4096, 1, 9, 9, 5, 20, 10000, 'v1.mp4', 'd1', 1, '[]');
INSERT INTO logLine(place, receivedMillis, levelName, message) VALUES (4096, 9, 'error', 'line');
INSERT INTO text(id, kind, value) VALUES (1, 0, 'Übersicht'), (2, 1, 'Card declined'), (7, 0, 'A');
INSERT INTO sessionText VALUES (4096, 1, 0, 0), (4096, 2, 1, 0), (4096, 7, 1, 1);
)sql";

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
