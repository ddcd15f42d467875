// What is removed, or was never committed, is in no file any more as soon as nobody is in the way.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/StoreTest.hpp"

namespace mireth::receiver {
namespace {

class SqliteRemoval : public test::StoreTest {};

TEST_F(SqliteRemoval, WhatWasRemovedWhileSomebodyReadIsTakenOutOfTheLogLater) {
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

TEST_F(SqliteRemoval, WhatAnEndedReceiverLeftInTheLogIsTakenOutAtTheStart) {
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

TEST_F(SqliteRemoval, AVideoWhoseCommitFailedGoes) {
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

TEST_F(SqliteRemoval, AVideoWhoseCommitFailedWhileSomebodyReadGoesLater) {
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

}  // namespace
}  // namespace mireth::receiver
