// The embedded store directly: durability, orphans, locks and damage.
#include "sqlite/SqliteStore.hpp"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "support/TemporaryDirectory.hpp"

namespace mireth::receiver {
namespace {

using test::TemporaryDirectory;

class SqliteStoreTest : public testing::Test {
  protected:
    std::unique_ptr<SqliteStore> open() {
        auto store = SqliteStore::open(data_, [this] { return "video-" + std::to_string(++videos_); });
        EXPECT_TRUE(store) << store.error();
        return std::move(*store);
    }
    std::string errorOfOpening() {
        const auto store = SqliteStore::open(data_, [] { return "video"; });
        return store ? "" : store.error();
    }
    static PutOutcome put(SqliteStore& store, std::int64_t number, const std::string& bytes = "video") {
        return tryPut(store, number, bytes).value();
    }
    static Stored<PutOutcome> tryPut(SqliteStore& store, std::int64_t number,
                                     const std::string& bytes = "video", std::size_t timelineBytes = 0) {
        const auto video = store.beginVideo();
        EXPECT_TRUE((*video)->append(bytes));
        const Chunk chunk{.number = number,
                          .frames = 2,
                          .durationMillis = 1000,
                          .events = 1,
                          .timeline = R"([{"timestamp":1,"type":"ChunkEndMarker","chunkNumber":)" +
                                      std::to_string(number) + "}" + std::string(timelineBytes, ' ') + "]"};
        return store.putChunk("S1", chunk, {}, **video, {});
    }
    static void addSession(SqliteStore& store, const std::string& id = "S1", std::int64_t start = 5) {
        ASSERT_TRUE(store.addSession({.id = id,
                                      .brandId = "b",
                                      .brandDc = "d",
                                      .projectId = "p",
                                      .startMillis = start,
                                      .closedMillis = {}}));
    }
    bool hasVideo(const std::string& name) const {
        return std::filesystem::exists(data_ + "/videos/" + name);
    }

    const TemporaryDirectory directory_;
    const std::string data_ = directory_.file("some/where/data");
    int videos_ = -1;  // the first identifier is the opening's
};

TEST_F(SqliteStoreTest, AVideoThatIsNotKeptVanishes) {
    const auto store = open();
    {
        const auto video = store->beginVideo();
        ASSERT_TRUE((*video)->append("abc"));
        EXPECT_EQ((*video)->size(), 3U);
        EXPECT_TRUE(hasVideo("video-1.mp4"));
    }
    EXPECT_FALSE(hasVideo("video-1.mp4"));
}

TEST_F(SqliteStoreTest, AVideoCanBeReadWhereverItHasBytes) {
    const auto store = open();
    const auto video = store->beginVideo();
    ASSERT_TRUE((*video)->append("abcdef"));
    unsigned char bytes[3] = {};
    EXPECT_TRUE((*video)->readAt(3, bytes));
    EXPECT_EQ(bytes[0], 'd');
    EXPECT_FALSE((*video)->readAt(4, bytes));
}

TEST_F(SqliteStoreTest, TellsWhyAChunkIsNotKept) {
    const auto store = open();
    EXPECT_EQ(put(*store, 0), PutOutcome::notOpen);
    addSession(*store);
    EXPECT_EQ(put(*store, 0), PutOutcome::kept);
    EXPECT_EQ(put(*store, 0), PutOutcome::repeated);
    EXPECT_EQ(put(*store, 0, "another"), PutOutcome::conflicting);
    EXPECT_EQ(store->closeSession("S1", "b", "p", 9), CloseOutcome::closed);
    EXPECT_EQ(put(*store, 1), PutOutcome::notOpen);
}

TEST_F(SqliteStoreTest, OrphansAreSweptAtTheNextStartAndNothingElse) {
    {
        const auto store = open();
        addSession(*store);
        EXPECT_EQ(put(*store, 0), PutOutcome::kept);
        EXPECT_EQ(store->sweptVideos(), 0);
    }
    std::ofstream(data_ + "/videos/orphan.mp4") << "x";
    std::ofstream(data_ + "/videos/note.txt") << "x";
    const auto store = open();
    EXPECT_EQ(store->sweptVideos(), 1);
    EXPECT_TRUE(hasVideo("video-1.mp4"));
    EXPECT_FALSE(hasVideo("orphan.mp4"));
    EXPECT_TRUE(hasVideo("note.txt"));
}

TEST_F(SqliteStoreTest, ListsTheLastStartedFirst) {
    const auto store = open();
    addSession(*store, "late", 9);
    addSession(*store, "S1", 5);
    EXPECT_EQ(put(*store, 0), PutOutcome::kept);
    EXPECT_EQ(put(*store, 1, "longer video"), PutOutcome::kept);
    const auto sessions = store->list({})->sessions;
    ASSERT_EQ(sessions.size(), 2U);
    EXPECT_EQ(sessions[0].chunks, 0);
    EXPECT_EQ(sessions[1].session.id, "S1");
    EXPECT_EQ(sessions[1].chunks, 2);
    EXPECT_EQ(sessions[1].frames, 4);
    EXPECT_EQ(sessions[1].bytes, 17);
    EXPECT_EQ(sessions[1].durationMillis, 11'000);
    EXPECT_EQ(sessions[1].events, 2);
    EXPECT_EQ(store->contents("other").value(), std::nullopt);
}

TEST_F(SqliteStoreTest, OnlyOneReceiverServesFromADirectory) {
    const auto store = open();
    EXPECT_EQ(errorOfOpening(), "another receiver serves from " + data_);
}

TEST_F(SqliteStoreTest, ReadingIsPossibleWhileAnotherServesAndChangesNothing) {
    const auto store = open();
    addSession(*store);
    const auto video = store->beginVideo();
    const auto reader = SqliteStore::openForReading(data_);
    ASSERT_TRUE(reader) << reader.error();
    EXPECT_EQ((*reader)->list({})->sessions.size(), 1U);
    EXPECT_TRUE(hasVideo("video-1.mp4"));
    EXPECT_FALSE((*reader)->addSession(
        {.id = "S2", .brandId = "b", .brandDc = "d", .projectId = "p", .closedMillis = {}}));
}

TEST_F(SqliteStoreTest, NothingIsReadWhereNothingIs) {
    const auto reader = SqliteStore::openForReading(data_);
    ASSERT_FALSE(reader);
    EXPECT_EQ(reader.error(), "there is no receiver's data in " + data_);
    EXPECT_FALSE(std::filesystem::exists(data_));
}

TEST_F(SqliteStoreTest, ADamagedDatabaseIsNamed) {
    std::filesystem::create_directories(data_);
    std::ofstream(data_ + "/receiver.db") << std::string(5000, 'x');
    EXPECT_EQ(errorOfOpening(), "cannot open the database " + data_ + "/receiver.db: file is not a database");
}

TEST_F(SqliteStoreTest, ANewerDatabaseIsLeftAlone) {
    {
        const auto store = open();
    }
    Database(data_ + "/receiver.db", Database::Mode::write).execute("PRAGMA user_version = 99");
    EXPECT_EQ(errorOfOpening(),
              "cannot open the database " + data_ + "/receiver.db: it was written by a newer receiver");
}

TEST_F(SqliteStoreTest, ALinkInTheDatabasesPlaceIsNotFollowed) {
    std::filesystem::create_directories(data_);
    std::ofstream(directory_.file("elsewhere")) << "";
    std::filesystem::create_symlink(directory_.file("elsewhere"), data_ + "/receiver.db");
    EXPECT_TRUE(errorOfOpening().starts_with("cannot make " + data_ + "/receiver.db"));
    std::filesystem::remove(data_ + "/receiver.db");
    std::filesystem::create_directories(directory_.file("other"));
    std::filesystem::create_directory_symlink(directory_.file("other"), data_ + "/videos");
    EXPECT_TRUE(errorOfOpening().starts_with("cannot open the folder " + data_ + "/videos"));
}

TEST_F(SqliteStoreTest, TheDataDirectoryMayBeReachedThroughALink) {
    std::filesystem::create_directories(directory_.file("private/data"));
    std::filesystem::create_directories(directory_.file("some"));
    std::filesystem::create_directory_symlink(directory_.file("private"), directory_.file("some/where"));
    {
        const auto store = open();
        addSession(*store);
        EXPECT_EQ(put(*store, 0), PutOutcome::kept);
    }
    const auto reader = SqliteStore::openForReading(data_);
    ASSERT_TRUE(reader) << reader.error();
    EXPECT_EQ((*reader)->videoPath((*reader)->contents("S1")->value().chunks.at(0).video.key),
              directory_.file("private/data/videos/video-1.mp4"));
    // The lock is the same by either name.
    const auto store = open();
    const auto other = SqliteStore::open(directory_.file("private/data"), [] { return "video"; });
    ASSERT_FALSE(other);
    EXPECT_EQ(other.error(), "another receiver serves from " + directory_.file("private/data"));
}

TEST_F(SqliteStoreTest, ADirectoryThatCannotBeMadeIsNamed) {
    std::ofstream(directory_.file("some")) << "a file in the way";
    EXPECT_EQ(errorOfOpening(), "cannot make the data directory " + data_ + ": Not a directory");
}

TEST_F(SqliteStoreTest, CountsWhatThereIsThroughEveryChangeAndStart) {
    const auto counts = [](SqliteStore& store) {
        const auto stats = store.stats().value();
        return std::pair(stats.sessions, stats.chunks);
    };
    {
        const auto store = open();
        EXPECT_EQ(counts(*store), std::pair(0L, 0L));
        addSession(*store);
        addSession(*store, "S2", 6);
        put(*store, 0);
        put(*store, 0);
        put(*store, 1);
        EXPECT_EQ(counts(*store), std::pair(2L, 2L));
    }
    const auto store = open();
    EXPECT_EQ(counts(*store), std::pair(2L, 2L));
    EXPECT_EQ(store->removeSessions({"S2", "unknown"}), 1);
    EXPECT_EQ(counts(*store), std::pair(1L, 2L));
    EXPECT_EQ(store->removeSessions({"S1"}), 1);
    EXPECT_EQ(counts(*store), std::pair(0L, 0L));
}

TEST_F(SqliteStoreTest, WhatWasRemovedWhileSomebodyReadIsTakenOutOfTheLogLater) {
    const auto store = open();
    addSession(*store, "secret-session");
    const auto inTheLog = [&] {
        return test::fileText(data_ + "/receiver.db-wal").find("secret-session") != std::string::npos;
    };
    {
        const Database other(data_ + "/receiver.db", Database::Mode::read);
        const Transaction reading(other, Transaction::Kind::read);
        EXPECT_TRUE(other.prepare("SELECT 1 FROM session").step());
        EXPECT_EQ(store->removeSessions({"secret-session"}), 1);
        EXPECT_EQ(store->finishRemovals(), false);
        EXPECT_TRUE(inTheLog());
    }
    EXPECT_EQ(store->finishRemovals(), true);
    EXPECT_FALSE(inTheLog());
}

TEST_F(SqliteStoreTest, WhatAnEndedReceiverLeftInTheLogIsTakenOutAtTheStart) {
    const auto ended = directory_.file("ended");
    {
        const auto store = open();
        addSession(*store, "secret-session");
        const Database other(data_ + "/receiver.db", Database::Mode::read);
        const Transaction reading(other, Transaction::Kind::read);
        EXPECT_TRUE(other.prepare("SELECT 1 FROM session").step());
        EXPECT_EQ(store->removeSessions({"secret-session"}), 1);
        // As it is when the receiver is killed now.
        std::filesystem::copy(data_, ended, std::filesystem::copy_options::recursive);
    }
    EXPECT_NE(test::fileText(ended + "/receiver.db-wal").find("secret-session"), std::string::npos);
    const auto again = SqliteStore::open(ended, [] { return "name"; });
    ASSERT_TRUE(again) << again.error();
    for (const auto* const name : {"/receiver.db", "/receiver.db-wal"}) {
        EXPECT_EQ(test::fileText(ended + name).find("secret-session"), std::string::npos) << name;
    }
}

/// What is wrong with a chunk is seen at the commit only.
constexpr const char* spoilCommits =
    "CREATE TABLE late (place INTEGER REFERENCES session(place) DEFERRABLE INITIALLY DEFERRED);"
    "CREATE TRIGGER spoil AFTER INSERT ON chunk BEGIN INSERT INTO late VALUES (-1); END";

TEST_F(SqliteStoreTest, AVideoWhoseCommitFailedGoes) {
    const auto store = open();
    addSession(*store);
    const Database other(data_ + "/receiver.db", Database::Mode::write);
    other.execute(spoilCommits);
    const auto outcome = tryPut(*store, 0);
    ASSERT_FALSE(outcome);
    EXPECT_NE(outcome.error().find("FOREIGN KEY"), std::string::npos) << outcome.error();
    EXPECT_FALSE(hasVideo("video-1.mp4"));
    EXPECT_EQ(store->stats()->videoBytes, 0U);
    other.execute("DROP TRIGGER spoil");
    EXPECT_EQ(put(*store, 0), PutOutcome::kept);
    EXPECT_TRUE(hasVideo("video-2.mp4"));
}

TEST_F(SqliteStoreTest, AVideoWhoseCommitFailedWhileSomebodyReadGoesLater) {
    const auto store = open();
    addSession(*store);
    const Database other(data_ + "/receiver.db", Database::Mode::write);
    other.execute(spoilCommits);
    {
        const Transaction reading(other, Transaction::Kind::read);
        EXPECT_TRUE(other.prepare("SELECT 1 FROM session").step());
        EXPECT_FALSE(tryPut(*store, 0));
        EXPECT_TRUE(hasVideo("video-1.mp4"));
    }
    EXPECT_EQ(store->finishRemovals(), true);
    EXPECT_FALSE(hasVideo("video-1.mp4"));
}

// Every connection that is opened meanwhile has a database that may not grow beyond 70 pages of 4 KiB.
class SmallDatabase {
  public:
    SmallDatabase() { sqlite3_auto_extension(entry()); }
    SmallDatabase(const SmallDatabase&) = delete;
    SmallDatabase& operator=(const SmallDatabase&) = delete;
    ~SmallDatabase() { sqlite3_cancel_auto_extension(entry()); }

  private:
    static int limit(sqlite3* connection, char**, const sqlite3_api_routines*) {
        return sqlite3_exec(connection, "PRAGMA max_page_count = 70", nullptr, nullptr, nullptr);
    }
    static void (*entry())() { return reinterpret_cast<void (*)()>(&limit); }
};

TEST_F(SqliteStoreTest, ADatabaseWithoutRoomSaysSoAndGoesOn) {
    const SmallDatabase small;
    const auto store = open();
    addSession(*store);
    EXPECT_EQ(tryPut(*store, 0, "video", 300'000), PutOutcome::noRoom);
    EXPECT_FALSE(hasVideo("video-1.mp4"));
    EXPECT_EQ(
        store->addLogLine({.sessionId = "S1", .levelName = "info", .message = std::string(300'000, 'x')}, {}),
        LineOutcome::noRoom);
    EXPECT_EQ(put(*store, 0), PutOutcome::kept);
}

TEST_F(SqliteStoreTest, LogLinesHaveABudgetPerSession) {
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

TEST_F(SqliteStoreTest, LogLinesWithoutASessionHaveABudgetPerProject) {
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

TEST_F(SqliteStoreTest, ALogLineBeyondItsBudgetWaitsForNobodyWhoWrites) {
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
