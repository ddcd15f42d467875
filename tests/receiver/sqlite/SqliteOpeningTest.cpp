// Opening a data folder: its lock, its links, what is damaged or left behind in it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/StoreTest.hpp"

namespace mireth::receiver {
namespace {

class SqliteOpening : public test::StoreTest {};

TEST_F(SqliteOpening, OrphansAreSweptAtTheNextStartAndNothingElse) {
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

TEST_F(SqliteOpening, OnlyOneReceiverServesFromADirectory) {
    const auto store = open();
    EXPECT_EQ(errorOfOpening(), "another receiver serves from " + data_);
}

TEST_F(SqliteOpening, ReadingIsPossibleWhileAnotherServesAndChangesNothing) {
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

TEST_F(SqliteOpening, NothingIsReadWhereNothingIs) {
    const auto reader = SqliteStore::openForReading(data_);
    ASSERT_FALSE(reader);
    EXPECT_EQ(reader.error(), "there is no receiver's data in " + data_);
    EXPECT_FALSE(std::filesystem::exists(data_));
}

TEST_F(SqliteOpening, ADamagedDatabaseIsNamed) {
    std::filesystem::create_directories(data_);
    std::ofstream(data_ + "/receiver.db") << std::string(5000, 'x');
    EXPECT_EQ(errorOfOpening(), "cannot open the database " + data_ + "/receiver.db: file is not a database");
}

TEST_F(SqliteOpening, ANewerDatabaseIsLeftAlone) {
    {
        const auto store = open();
    }
    Database(data_ + "/receiver.db", Database::Mode::write).execute("PRAGMA user_version = 99");
    EXPECT_EQ(errorOfOpening(),
              "cannot open the database " + data_ + "/receiver.db: it was written by a newer receiver");
}

TEST_F(SqliteOpening, ALinkInTheDatabasesPlaceIsNotFollowed) {
    std::filesystem::create_directories(data_);
    std::ofstream(directory_.file("elsewhere")) << "";
    std::filesystem::create_symlink(directory_.file("elsewhere"), data_ + "/receiver.db");
    EXPECT_TRUE(errorOfOpening().starts_with("cannot make " + data_ + "/receiver.db"));
    std::filesystem::remove(data_ + "/receiver.db");
    std::filesystem::create_directories(directory_.file("other"));
    std::filesystem::create_directory_symlink(directory_.file("other"), data_ + "/videos");
    EXPECT_TRUE(errorOfOpening().starts_with("cannot open the folder " + data_ + "/videos"));
}

TEST_F(SqliteOpening, TheDataDirectoryMayBeReachedThroughALink) {
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

TEST_F(SqliteOpening, ADirectoryThatCannotBeMadeIsNamed) {
    std::ofstream(directory_.file("some")) << "a file in the way";
    EXPECT_EQ(errorOfOpening(), "cannot make the data directory " + data_ + ": Not a directory");
}

}  // namespace
}  // namespace mireth::receiver
