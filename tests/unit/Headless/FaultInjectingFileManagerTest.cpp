// A disk that fills up and operations that fail on demand.
#include "MirethVex/Headless/FaultInjectingFileManager.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace mireth::headless {
namespace {

using platform::FileResult;
using ::testing::HasSubstr;

/// Files in a map.
class MapFiles final : public platform::FileManager {
  public:
    struct File final : platform::PendingFile {
        File(MapFiles& owner, std::string key) : files(owner), name(std::move(key)) {}
        FileResult<void> write(std::span<const std::byte> bytes) override {
            content.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
            files.written = content;
            return {};
        }
        FileResult<void> commit() override {
            files.contents[name] = content;
            return {};
        }
        MapFiles& files;
        std::string name;
        std::string content;
    };

    FileResult<std::filesystem::path> userCachesDirectory() override { return "/caches"; }
    bool itemExists(const std::filesystem::path& path) override { return contents.contains(path.string()); }
    FileResult<void> createDirectory(const std::filesystem::path&) override { return {}; }
    FileResult<std::vector<std::filesystem::path>> contentsOfDirectory(
        const std::filesystem::path&) override {
        return {};
    }
    FileResult<void> removeItem(const std::filesystem::path&) override { return {}; }
    FileResult<std::string> readFile(const std::filesystem::path& path, std::uint64_t) override {
        return contents.at(path.string());
    }
    FileResult<std::unique_ptr<platform::PendingFile>> createFile(
        const std::filesystem::path& path) override {
        return std::make_unique<File>(*this, path.string());
    }

    std::map<std::string, std::string> contents;
    std::string written;
};

class FaultInjectingFileManagerTest : public ::testing::Test {
  protected:
    std::shared_ptr<MapFiles> inner = std::make_shared<MapFiles>();
    FaultInjectingFileManager files{inner};
    static std::span<const std::byte> bytes(std::string_view text) { return std::as_bytes(std::span(text)); }
};

TEST_F(FaultInjectingFileManagerTest, WithoutFaultsEverythingPassesThrough) {
    auto file = files.createFile("/f");
    ASSERT_TRUE(file);
    ASSERT_TRUE((*file)->write(bytes("abc")));
    ASSERT_TRUE((*file)->commit());
    EXPECT_TRUE(files.itemExists("/f"));
    EXPECT_EQ(files.readFile("/f", 10), "abc");
}

TEST_F(FaultInjectingFileManagerTest, AFullDiskTakesTheFirstBytesAndThenFails) {
    files.setByteBudget(5);
    auto file = files.createFile("/f");
    EXPECT_TRUE((*file)->write(bytes("abc")));
    const auto second = (*file)->write(bytes("defg"));
    ASSERT_FALSE(second);
    EXPECT_THAT(second.error().description, HasSubstr("No space left on device"));
    EXPECT_EQ(inner->written, "abcde");
    files.setByteBudget(std::nullopt);
    EXPECT_TRUE((*file)->write(bytes("!")));
}

TEST_F(FaultInjectingFileManagerTest, AnOperationFailsAsOftenAsItWasTold) {
    files.failNext(FileOperation::createDirectory, 2, "Permission denied");
    EXPECT_FALSE(files.createDirectory("/d"));
    const auto second = files.createDirectory("/d");
    ASSERT_FALSE(second);
    EXPECT_EQ(second.error().description, "/d: Permission denied");
    EXPECT_TRUE(files.createDirectory("/d"));
}

TEST_F(FaultInjectingFileManagerTest, EveryOperationCanFail) {
    files.failNext(FileOperation::userCachesDirectory);
    EXPECT_FALSE(files.userCachesDirectory());
    files.failNext(FileOperation::contentsOfDirectory);
    EXPECT_FALSE(files.contentsOfDirectory("/d"));
    files.failNext(FileOperation::removeItem);
    EXPECT_FALSE(files.removeItem("/f"));
    files.failNext(FileOperation::readFile);
    EXPECT_FALSE(files.readFile("/f", 1));
    files.failNext(FileOperation::createFile);
    EXPECT_FALSE(files.createFile("/f"));
    auto file = files.createFile("/f");
    files.failNext(FileOperation::write);
    EXPECT_FALSE((*file)->write(bytes("a")));
    files.failNext(FileOperation::commit);
    EXPECT_FALSE((*file)->commit());
}

}  // namespace
}  // namespace mireth::headless
