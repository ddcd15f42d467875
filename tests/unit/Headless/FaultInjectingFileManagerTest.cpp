// A disk that fills up and operations that fail on demand.
#include "MirethVex/Headless/FaultInjectingFileManager.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/MemoryFileManager.hpp"

namespace mireth::headless {
namespace {

using ::testing::HasSubstr;

class FaultInjectingFileManagerTest : public ::testing::Test {
  protected:
    std::shared_ptr<tests::MemoryFileManager> inner = std::make_shared<tests::MemoryFileManager>();
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
    files.setByteBudget(std::nullopt);
    EXPECT_TRUE((*file)->write(bytes("!")));
    EXPECT_TRUE((*file)->commit());
    EXPECT_EQ(inner->files["/f"], "abcde!");
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
