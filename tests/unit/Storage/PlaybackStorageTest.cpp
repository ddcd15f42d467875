#include "PrivateSide/Storage/PlaybackStorage.hpp"

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "MirethVex/Headless/FaultInjectingFileManager.hpp"
#include "support/LogCapture.hpp"
#include "support/MemoryFileManager.hpp"

namespace mireth {
namespace {

using headless::FaultInjectingFileManager;
using headless::FileOperation;
using test::errorLine;
using test::infoLine;
using test::LogCapture;
using testing::HasSubstr;

const std::filesystem::path directory = "/caches/mireth/playback";

class Playback : public testing::Test {
  protected:
    void store(const std::string& name) { memory->files[directory / name] = "video"; }

    LogCapture capture;
    std::shared_ptr<tests::MemoryFileManager> memory = std::make_shared<tests::MemoryFileManager>();
    std::shared_ptr<FaultInjectingFileManager> files = std::make_shared<FaultInjectingFileManager>(memory);
    PlaybackStorage storage{capture.log(), files};
};

TEST_F(Playback, TheFirstCountOfAFreshInstallCreatesTheDirectoryAndIsZero) {
    EXPECT_FALSE(memory->itemExists(directory));
    EXPECT_EQ(storage.getCount().value(), 0);
    EXPECT_TRUE(memory->itemExists(directory));
    capture.expectLines({});
}

TEST_F(Playback, AFileIsNamedBySessionAndChunkAndIsNotCreated) {
    EXPECT_EQ(storage.getPlaybackFileURL("S1", 7).value(), directory / "S1-7.mp4");
    EXPECT_EQ(storage.getPlaybackFileURL("S1", 0).value(), directory / "S1-0.mp4");
    EXPECT_EQ(storage.getPlaybackFileURL("S1", 10).value(), directory / "S1-10.mp4");
    EXPECT_TRUE(memory->files.empty());
    EXPECT_TRUE(memory->itemExists(directory));
}

TEST_F(Playback, ASessionIdWithDotsKeepsThemInTheName) {
    EXPECT_EQ(storage.getPlaybackFileURL("a.b", 1).value(), directory / "a.b-1.mp4");
}

TEST_F(Playback, CountIsTheNumberOfEntries) {
    ASSERT_TRUE(storage.getCount());
    store("S1-0.mp4");
    store("S2-0.mp4");
    EXPECT_EQ(storage.getCount().value(), 2);
}

TEST_F(Playback, DeleteRemovesOneFileAndAMissingOneIsNotReported) {
    store("S1-0.mp4");
    store("S1-1.mp4");
    storage.deleteFile("S1", 0);
    storage.deleteFile("S1", 0);
    EXPECT_EQ(memory->files.size(), 1U);
    EXPECT_TRUE(memory->files.contains(directory / "S1-1.mp4"));
    capture.expectLines({});
}

TEST_F(Playback, DeleteAllLogsEachRemovedFile) {
    ASSERT_TRUE(storage.getCount());
    store("S1-0.mp4");
    store("S1-1.mp4");
    storage.deleteAll();
    EXPECT_TRUE(memory->files.empty());
    EXPECT_TRUE(memory->itemExists(directory));
    capture.expectLines({
        infoLine(LogTag::playback, R"(Removed file. ["filePath": "/caches/mireth/playback/S1-0.mp4"])"),
        infoLine(LogTag::playback, R"(Removed file. ["filePath": "/caches/mireth/playback/S1-1.mp4"])"),
    });
}

TEST_F(Playback, DeleteAllOfAnEmptyDirectoryLogsNothingAndLeavesItInPlace) {
    ASSERT_TRUE(storage.getCount());
    storage.deleteAll();
    EXPECT_TRUE(memory->itemExists(directory));
    capture.expectLines({});
}

TEST_F(Playback, DeleteAllGoesOnAfterAFileThatCannotBeRemoved) {
    ASSERT_TRUE(storage.getCount());
    store("S1-0.mp4");
    store("S1-1.mp4");
    files->failNext(FileOperation::removeItem, 1, "no permission");
    storage.deleteAll();
    EXPECT_EQ(memory->files.size(), 1U);
    const auto lines = capture.take();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].level, LogLevel::error);
    EXPECT_THAT(
        lines[0].text,
        HasSubstr(
            R"(Could not remove file. ["filePath": "/caches/mireth/playback/S1-0.mp4", "errorDetails": ")"));
    EXPECT_THAT(lines[0].text, HasSubstr("no permission"));
    EXPECT_EQ(lines[1], infoLine(LogTag::playback,
                                 R"(Removed file. ["filePath": "/caches/mireth/playback/S1-1.mp4"])"));
}

TEST_F(Playback, DeleteAllOfADirectoryThatCannotBeListedLogsThatAndStops) {
    ASSERT_TRUE(storage.getCount());
    store("S1-0.mp4");
    files->failNext(FileOperation::contentsOfDirectory);
    storage.deleteAll();
    EXPECT_EQ(memory->files.size(), 1U);
    capture.expectLines({errorLine(LogTag::playback, "Failed to retrieve chunk files to delete")});
}

TEST_F(Playback, WithoutACachesDirectoryEverythingFailsAndSaysSo) {
    const auto line = errorLine(LogTag::playback, "Cannot create the output URL");
    files->failNext(FileOperation::userCachesDirectory, 1, "no home");
    const auto file = storage.getPlaybackFileURL("S1", 0);
    ASSERT_FALSE(file.has_value());
    EXPECT_THAT(file.error().description, HasSubstr("no home"));
    capture.expectLines({line});
    files->failNext(FileOperation::userCachesDirectory);
    EXPECT_FALSE(storage.getCount().has_value());
    capture.expectLines({line});
    files->failNext(FileOperation::userCachesDirectory);
    storage.deleteFile("S1", 0);
    capture.expectLines({line});
    files->failNext(FileOperation::userCachesDirectory);
    storage.deleteAll();
    capture.expectLines({line, errorLine(LogTag::playback, "Failed to retrieve chunk files to delete")});
}

TEST_F(Playback, ADirectoryThatCannotBeCreatedFailsTheCall) {
    files->failNext(FileOperation::createDirectory, 2, "read-only");
    const auto file = storage.getPlaybackFileURL("S1", 0);
    ASSERT_FALSE(file.has_value());
    EXPECT_THAT(file.error().description, HasSubstr("read-only"));
    EXPECT_FALSE(storage.getCount().has_value());
    capture.expectLines({});
}

TEST_F(Playback, AListingFailureFailsTheCount) {
    files->failNext(FileOperation::contentsOfDirectory, 1, "broken");
    const auto count = storage.getCount();
    ASSERT_FALSE(count.has_value());
    EXPECT_THAT(count.error().description, HasSubstr("broken"));
}

TEST_F(Playback, AHostileSessionIdGivesNoFileAndDeletesNothing) {
    memory->files["/caches/x-0.mp4"] = "mine";
    memory->files["/caches/mireth/x-0.mp4"] = "mine too";
    const std::vector<std::string> hostile{"../x",
                                           "../../x",
                                           "a/b",
                                           "/etc/passwd",
                                           "x\r\ny",
                                           "",
                                           "größe",
                                           ".",
                                           "..",
                                           std::string(4096, 'a'),
                                           std::string("a\0b", 3)};
    for (const auto& id : hostile) {
        EXPECT_FALSE(storage.getPlaybackFileURL(id, 0).has_value()) << id;
        storage.deleteFile(id, 0);
    }
    EXPECT_EQ(memory->files.size(), 2U);
    capture.expectLines({});
}

}  // namespace
}  // namespace mireth
