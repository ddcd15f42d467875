#include "FileManagerContract.hpp"

namespace mireth::test {

using namespace std::string_view_literals;
namespace fs = std::filesystem;

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FileManagerContract);

TEST_P(FileManagerContract, AnswersTheCachesDirectory) {
    const auto directory = files().userCachesDirectory();
    ASSERT_TRUE(directory) << directory.error().description;
    EXPECT_EQ(*directory, harness_->expectedCachesDirectory());
}

TEST_P(FileManagerContract, CreatesADirectoryWithTheMissingOnesAboveIt) {
    EXPECT_FALSE(files().itemExists(root() / "a"));
    const auto made = files().createDirectory(root() / "a/b/c");
    ASSERT_TRUE(made) << made.error().description;
    EXPECT_EQ(files().contentsOfDirectory(root() / "a").value(), std::vector{root() / "a/b"});
    EXPECT_EQ(files().contentsOfDirectory(root() / "a/b").value(), std::vector{root() / "a/b/c"});
    EXPECT_TRUE(files().contentsOfDirectory(root() / "a/b/c").value().empty());
}

TEST_P(FileManagerContract, AnExistingDirectoryIsNoError) {
    EXPECT_TRUE(files().createDirectory(root() / "there"));
    EXPECT_TRUE(files().createDirectory(root() / "there"));
    EXPECT_TRUE(files().createDirectory(root() / "there/"));
    EXPECT_EQ(files().contentsOfDirectory(root()).value(), std::vector{root() / "there"});
}

TEST_P(FileManagerContract, ADirectoryBelowAFileCannotBeCreated) {
    ASSERT_TRUE(writeWhole(files(), root() / "file", "x"));
    const auto made = files().createDirectory(root() / "file/below");
    ASSERT_FALSE(made);
    EXPECT_NE(made.error().description.find("file/below"), std::string::npos) << made.error().description;
    EXPECT_FALSE(files().createDirectory(root() / "file"));
    EXPECT_EQ(files().readFile(root() / "file", 10).value_or("error"), "x");
}

TEST_P(FileManagerContract, ListsEntriesSortedWithTheirFullPaths) {
    for (const char* name : {"b", "a", ".hidden", "C"}) {
        ASSERT_TRUE(writeWhole(files(), root() / name, "x"));
    }
    ASSERT_TRUE(files().createDirectory(root() / "aa/below"));
    const auto contents = files().contentsOfDirectory(root());
    ASSERT_TRUE(contents) << contents.error().description;
    EXPECT_EQ(*contents,
              (std::vector{root() / ".hidden", root() / "C", root() / "a", root() / "aa", root() / "b"}));
    EXPECT_FALSE(files().contentsOfDirectory(root() / "missing"));
    EXPECT_FALSE(files().contentsOfDirectory(root() / "a"));
}

TEST_P(FileManagerContract, RemovesAFileAndNoDirectory) {
    ASSERT_TRUE(writeWhole(files(), root() / "file", "x"));
    ASSERT_TRUE(files().createDirectory(root() / "directory"));
    EXPECT_TRUE(files().removeItem(root() / "file"));
    EXPECT_FALSE(files().itemExists(root() / "file"));
    const auto again = files().removeItem(root() / "file");
    ASSERT_FALSE(again);
    EXPECT_NE(again.error().description.find("file"), std::string::npos);
    EXPECT_FALSE(files().removeItem(root() / "directory"));
    EXPECT_TRUE(files().itemExists(root() / "directory"));
}

TEST_P(FileManagerContract, ReadsAFileUpToItsCap) {
    const std::string content("a\0b\n"sv);
    ASSERT_TRUE(writeWhole(files(), root() / "file", content));
    EXPECT_EQ(files().readFile(root() / "file", 4).value_or("error"), content);
    EXPECT_FALSE(files().readFile(root() / "file", 3));
}

TEST_P(FileManagerContract, ReadsNothingButAFile) {
    ASSERT_TRUE(files().createDirectory(root() / "directory"));
    EXPECT_FALSE(files().readFile(root() / "directory", 10));
    EXPECT_FALSE(files().readFile(root() / "missing", 10));
}

TEST_P(FileManagerContract, AFileAppearsOnlyWhenItIsComplete) {
    auto file = files().createFile(root() / "chunk");
    ASSERT_TRUE(file) << file.error().description;
    EXPECT_TRUE((*file)->write(bytes("first ")));
    EXPECT_TRUE((*file)->write(bytes("second")));
    EXPECT_FALSE(files().itemExists(root() / "chunk"));
    const auto committed = (*file)->commit();
    ASSERT_TRUE(committed) << committed.error().description;
    EXPECT_EQ(files().readFile(root() / "chunk", 100).value_or("error"), "first second");
    EXPECT_FALSE((*file)->write(bytes("third")));
    EXPECT_FALSE((*file)->commit());
    file->reset();
    EXPECT_EQ(files().contentsOfDirectory(root()).value(), std::vector{root() / "chunk"});
    EXPECT_EQ(files().readFile(root() / "chunk", 100).value_or("error"), "first second");
}

TEST_P(FileManagerContract, ADroppedFileLeavesNothing) {
    {
        auto file = files().createFile(root() / "chunk");
        ASSERT_TRUE(file);
        EXPECT_TRUE((*file)->write(bytes("x")));
    }
    EXPECT_TRUE(files().contentsOfDirectory(root()).value().empty());
}

TEST_P(FileManagerContract, ATakenNameIsLeftAsItWas) {
    ASSERT_TRUE(writeWhole(files(), root() / "file", "old"));
    ASSERT_TRUE(files().createDirectory(root() / "directory"));
    EXPECT_FALSE(writeWhole(files(), root() / "file", "new"));
    EXPECT_FALSE(writeWhole(files(), root() / "directory", "new"));
    EXPECT_EQ(files().readFile(root() / "file", 10).value_or("error"), "old");
    EXPECT_EQ(files().contentsOfDirectory(root()).value().size(), 2u);
}

TEST_P(FileManagerContract, AFileWithoutAUsableNameOrDirectoryIsAnError) {
    ASSERT_TRUE(writeWhole(files(), root() / "file", "x"));
    for (const fs::path& path :
         {fs::path(), fs::path("/"), root() / "missing/chunk", root() / "file/chunk", root() / "..",
          root() / ".", root() / "chunk/", root() / std::string(300, 'n'), root() / "a\0b"sv}) {
        EXPECT_FALSE(writeWhole(files(), path, "x")) << path;
    }
    EXPECT_EQ(files().contentsOfDirectory(root()).value().size(), 1u);
}

TEST_P(FileManagerContract, APathWithAZeroByteIsNeverCutShort) {
    ASSERT_TRUE(writeWhole(files(), root() / "file", "x"));
    const fs::path path = root() / "file\0tail"sv;
    EXPECT_FALSE(files().itemExists(path));
    EXPECT_FALSE(files().removeItem(path));
    EXPECT_FALSE(files().readFile(path, 10));
    EXPECT_FALSE(files().createDirectory(root() / "new\0tail"sv));
    EXPECT_FALSE(files().contentsOfDirectory(fs::path(root().native() + std::string("\0x", 2))));
    EXPECT_EQ(files().contentsOfDirectory(root()).value(), std::vector{root() / "file"});
}

}  // namespace mireth::test
