// Reading files that may be hostile.
#include "phone/JsonFile.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "TemporaryFolder.hpp"
#include "phone/ScenarioError.hpp"

namespace mireth::phone {
namespace {

using ::testing::HasSubstr;

class JsonFileTest : public ::testing::Test {
  protected:
    std::string complaintAbout(const std::filesystem::path& file, std::size_t maximumBytes = 100) const {
        try {
            (void)readWholeFile(file, maximumBytes, false);
        } catch (const ScenarioError& error) {
            return error.what();
        }
        return "";
    }
    TemporaryFolder folder;
};

TEST_F(JsonFileTest, ReadsAFileWhole) {
    std::ofstream(folder.path() / "f") << "abc";
    EXPECT_EQ(readWholeFile(folder.path() / "f", 3, false), "abc");
}

TEST_F(JsonFileTest, RefusesWhatIsNotARegularFileOfModestSize) {
    EXPECT_THAT(complaintAbout(folder.path() / "none"), HasSubstr("No such file"));
    EXPECT_THAT(complaintAbout(folder.path()), HasSubstr("not a regular file"));
    std::ofstream(folder.path() / "big") << std::string(101, 'a');
    EXPECT_THAT(complaintAbout(folder.path() / "big"), HasSubstr("larger than"));
    ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
    EXPECT_THAT(complaintAbout(folder.path() / "pipe"), HasSubstr("not a regular file"));
}

TEST_F(JsonFileTest, FollowsLinksOnlyWhenAskedTo) {
    std::ofstream(folder.path() / "f") << "abc";
    std::filesystem::create_symlink("f", folder.path() / "link");
    EXPECT_THAT(complaintAbout(folder.path() / "link"), HasSubstr("it is a symbolic link"));
    EXPECT_EQ(readWholeFile(folder.path() / "link", 3, true), "abc");
}

}  // namespace
}  // namespace mireth::phone
