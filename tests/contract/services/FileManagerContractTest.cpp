#include "FileManagerContract.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

namespace mireth::test {

using namespace std::string_view_literals;
namespace fs = std::filesystem;

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FileManagerContract);

namespace {

/// Sets the process's umask for the length of a test.
class Umask {
  public:
    explicit Umask(mode_t mask) : before_(umask(mask)) {}
    Umask(const Umask&) = delete;
    Umask& operator=(const Umask&) = delete;
    ~Umask() { umask(before_); }

  private:
    const mode_t before_;
};

mode_t modeOf(const fs::path& path) {
    struct stat status{};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

std::span<const std::byte> bytes(std::string_view text) {
    return std::as_bytes(std::span(text));
}

platform::FileResult<void> writeWhole(platform::FileManager& files, const fs::path& path,
                                      std::string_view text) {
    auto file = files.createFile(path);
    if (!file) {
        return std::unexpected(file.error());
    }
    if (auto written = (*file)->write(bytes(text)); !written) {
        return written;
    }
    return (*file)->commit();
}

}  // namespace

TEST_P(FileManagerContract, AnswersTheCachesDirectory) {
    const auto directory = harness_->files().userCachesDirectory();
    ASSERT_TRUE(directory) << directory.error().description;
    EXPECT_EQ(*directory, harness_->expectedCachesDirectory());
}

TEST_P(FileManagerContract, DirectoriesAreTheOwnersOnlyWhateverTheUmask) {
    for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{0777}}) {
        const TemporaryDirectory root;
        const Umask umask(mask);
        const auto made = harness_->files().createDirectory(root / "a/b/c");
        ASSERT_TRUE(made) << made.error().description;
        for (const char* name : {"a", "a/b", "a/b/c"}) {
            EXPECT_EQ(modeOf(root / name), 0700u) << name << " with umask " << mask;
        }
    }
}

TEST_P(FileManagerContract, AnExistingDirectoryIsNoErrorAndBecomesTheOwnersOnly) {
    const TemporaryDirectory root;
    ASSERT_EQ(mkdir((root / "open").c_str(), 0755), 0);
    chmod((root / "open").c_str(), 0755);
    EXPECT_TRUE(harness_->files().createDirectory(root / "open"));
    EXPECT_TRUE(harness_->files().createDirectory(root / "open/"));
    EXPECT_EQ(modeOf(root / "open"), 0700u);
}

TEST_P(FileManagerContract, TheDirectoryOfAnotherUserIsRefused) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give a directory away";
    }
    const TemporaryDirectory root;
    constexpr uid_t nobody = 65534;
    ASSERT_EQ(mkdir((root / "foreign").c_str(), 0777), 0);
    ASSERT_EQ(chown((root / "foreign").c_str(), nobody, nobody), 0);
    const auto made = harness_->files().createDirectory(root / "foreign");
    ASSERT_FALSE(made);
    EXPECT_NE(made.error().description.find("foreign"), std::string::npos) << made.error().description;
}

TEST_P(FileManagerContract, ADirectoryBelowAFileCannotBeCreated) {
    const TemporaryDirectory root;
    writeFile(root / "file", "x");
    const auto made = harness_->files().createDirectory(root / "file/below");
    ASSERT_FALSE(made);
    EXPECT_NE(made.error().description.find("file/below"), std::string::npos) << made.error().description;
    EXPECT_FALSE(harness_->files().createDirectory(root / "file"));
}

TEST_P(FileManagerContract, ALinkIsNotTakenForTheDirectoryItPointsTo) {
    const TemporaryDirectory root;
    fs::create_directory(root / "target");
    writeFile(root / "target/secret", "x");
    fs::create_directory_symlink(root / "target", root / "link");
    EXPECT_FALSE(harness_->files().createDirectory(root / "link"));
    EXPECT_FALSE(harness_->files().createDirectory(root / "link/"));
    EXPECT_FALSE(harness_->files().contentsOfDirectory(root / "link"));
    EXPECT_FALSE(harness_->files().contentsOfDirectory(root / "link/"));
    EXPECT_FALSE(harness_->files().createFile(root / "link/new"));
    EXPECT_TRUE(harness_->files().createDirectory(root / "link/below")) << "links further up are followed";
}

TEST_P(FileManagerContract, ListsEntriesSortedWithTheirFullPaths) {
    const TemporaryDirectory root;
    for (const char* name : {"b", "a", ".hidden", "C"}) {
        writeFile(root / name, "x");
    }
    fs::create_symlink("nowhere", root / "dangling");
    const auto contents = harness_->files().contentsOfDirectory(root.path());
    ASSERT_TRUE(contents) << contents.error().description;
    EXPECT_EQ(*contents,
              (std::vector{root / ".hidden", root / "C", root / "a", root / "b", root / "dangling"}));
    EXPECT_FALSE(harness_->files().contentsOfDirectory(root / "missing"));
    EXPECT_FALSE(harness_->files().contentsOfDirectory(root / "a"));
}

TEST_P(FileManagerContract, AnItemExistsAlsoWhenItIsADanglingLink) {
    const TemporaryDirectory root;
    fs::create_symlink("nowhere", root / "dangling");
    EXPECT_TRUE(harness_->files().itemExists(root / "dangling"));
    EXPECT_TRUE(harness_->files().itemExists(root.path()));
    EXPECT_FALSE(harness_->files().itemExists(root / "missing"));
}

TEST_P(FileManagerContract, RemovesALinkAndNotItsTarget) {
    const TemporaryDirectory root;
    writeFile(root / "target", "x");
    fs::create_symlink(root / "target", root / "link");
    EXPECT_TRUE(harness_->files().removeItem(root / "link"));
    EXPECT_TRUE(fs::exists(root / "target"));
    EXPECT_TRUE(harness_->files().removeItem(root / "target"));
    EXPECT_FALSE(harness_->files().itemExists(root / "target"));
    const auto again = harness_->files().removeItem(root / "target");
    ASSERT_FALSE(again);
    EXPECT_NE(again.error().description.find("target"), std::string::npos);
}

TEST_P(FileManagerContract, ReadsAFileUpToItsCap) {
    const TemporaryDirectory root;
    const std::string content("a\0b\n"sv);
    writeFile(root / "file", content);
    EXPECT_EQ(harness_->files().readFile(root / "file", 4).value_or("error"), content);
    EXPECT_FALSE(harness_->files().readFile(root / "file", 3));
    EXPECT_FALSE(harness_->files().readFile(root / "missing", 10));
}

TEST_P(FileManagerContract, ReadsRegularFilesOnly) {
    const TemporaryDirectory root;
    writeFile(root / "file", "x");
    fs::create_symlink(root / "file", root / "link");
    ASSERT_EQ(mkfifo((root / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(harness_->files().readFile(root / "link", 10));
    EXPECT_FALSE(harness_->files().readFile(root / "pipe", 10)) << "and does not wait for a writer";
    EXPECT_FALSE(harness_->files().readFile(root.path(), 10));
}

TEST_P(FileManagerContract, AFileAppearsOnlyWhenItIsComplete) {
    const TemporaryDirectory root;
    auto file = harness_->files().createFile(root / "chunk");
    ASSERT_TRUE(file) << file.error().description;
    EXPECT_TRUE((*file)->write(bytes("first ")));
    EXPECT_TRUE((*file)->write(bytes("second")));
    EXPECT_FALSE(fs::exists(root / "chunk"));
    const auto committed = (*file)->commit();
    ASSERT_TRUE(committed) << committed.error().description;
    EXPECT_EQ(harness_->files().readFile(root / "chunk", 100).value_or("error"), "first second");
    EXPECT_FALSE((*file)->write(bytes("third")));
    EXPECT_FALSE((*file)->commit());
    file->reset();
    EXPECT_EQ(harness_->files().contentsOfDirectory(root.path()).value().size(), 1u);
}

TEST_P(FileManagerContract, AFileIsTheOwnersOnlyWhateverTheUmask) {
    for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{0777}}) {
        const TemporaryDirectory root;
        const Umask umask(mask);
        const auto written = writeWhole(harness_->files(), root / "chunk", "x");
        ASSERT_TRUE(written) << written.error().description;
        EXPECT_EQ(modeOf(root / "chunk"), 0600u) << "with umask " << mask;
    }
}

TEST_P(FileManagerContract, ADroppedFileLeavesNothing) {
    const TemporaryDirectory root;
    {
        auto file = harness_->files().createFile(root / "chunk");
        ASSERT_TRUE(file);
        EXPECT_TRUE((*file)->write(bytes("x")));
    }
    EXPECT_TRUE(fs::is_empty(root.path()));
}

TEST_P(FileManagerContract, ATakenNameIsLeftAsItWas) {
    const TemporaryDirectory root;
    writeFile(root / "outside", "mine");
    writeFile(root / "store/file", "old");
    fs::create_directory(root / "store/directory");
    fs::create_symlink(root / "outside", root / "store/link");
    fs::create_symlink(root / "planted", root / "store/dangling");
    for (const char* name : {"file", "directory", "link", "dangling"}) {
        EXPECT_FALSE(writeWhole(harness_->files(), root / "store" / name, "new")) << name;
    }
    EXPECT_EQ(harness_->files().readFile(root / "store/file", 10).value_or("error"), "old");
    EXPECT_EQ(harness_->files().readFile(root / "outside", 10).value_or("error"), "mine");
    EXPECT_FALSE(fs::exists(root / "planted"));
    EXPECT_EQ(harness_->files().contentsOfDirectory(root / "store").value().size(), 4u);
}

TEST_P(FileManagerContract, ALinkPlantedWhileTheFileIsWrittenIsNotFollowed) {
    const TemporaryDirectory root;
    writeFile(root / "outside", "mine");
    auto file = harness_->files().createFile(root / "chunk");
    ASSERT_TRUE(file);
    EXPECT_TRUE((*file)->write(bytes("frames")));
    fs::create_symlink(root / "outside", root / "chunk");
    EXPECT_FALSE((*file)->commit());
    EXPECT_EQ(harness_->files().readFile(root / "outside", 10).value_or("error"), "mine");
    EXPECT_TRUE(fs::is_symlink(root / "chunk"));
}

TEST_P(FileManagerContract, AFileStaysInTheDirectoryItWasBegunIn) {
    const TemporaryDirectory root;
    fs::create_directory(root / "store");
    fs::create_directory(root / "elsewhere");
    auto file = harness_->files().createFile(root / "store/chunk");
    ASSERT_TRUE(file);
    fs::rename(root / "store", root / "moved");
    fs::create_directory_symlink(root / "elsewhere", root / "store");
    EXPECT_TRUE((*file)->commit());
    EXPECT_TRUE(fs::exists(root / "moved/chunk"));
    EXPECT_TRUE(fs::is_empty(root / "elsewhere"));
}

TEST_P(FileManagerContract, AFileWithoutAUsableNameOrDirectoryIsAnError) {
    const TemporaryDirectory root;
    writeFile(root / "file", "x");
    for (const fs::path& path :
         {fs::path(), fs::path("/"), root / "missing/chunk", root / "file/chunk", root / "..", root / ".",
          root / "chunk/", fs::path("/proc/chunk"), root / std::string(300, 'n'), root / "a\0b"sv}) {
        EXPECT_FALSE(writeWhole(harness_->files(), path, "x")) << path;
    }
}

TEST_P(FileManagerContract, APathWithAZeroByteIsNeverCutShort) {
    const TemporaryDirectory root;
    writeFile(root / "file", "x");
    const fs::path path = root / "file\0tail"sv;
    EXPECT_FALSE(harness_->files().itemExists(path));
    EXPECT_FALSE(harness_->files().removeItem(path));
    EXPECT_FALSE(harness_->files().readFile(path, 10));
    EXPECT_FALSE(harness_->files().createDirectory(root / "new\0tail"sv));
    EXPECT_FALSE(
        harness_->files().contentsOfDirectory(fs::path(root.path().native() + std::string("\0x", 2))));
    EXPECT_TRUE(fs::exists(root / "file"));
    EXPECT_FALSE(fs::exists(root / "new"));
}

}  // namespace mireth::test
