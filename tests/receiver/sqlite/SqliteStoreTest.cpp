// The embedded store directly: what it keeps, lists and counts, and what it does without room.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "support/StoreTest.hpp"

namespace mireth::receiver {
namespace {

class SqliteStoreTest : public test::StoreTest {};

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

}  // namespace
}  // namespace mireth::receiver
