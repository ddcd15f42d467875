#include <sys/stat.h>
#include <unistd.h>

#include "FileManagerContract.hpp"

namespace mireth::test {

namespace fs = std::filesystem;

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FileManagerOnDisk);

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

}  // namespace

TEST_P(FileManagerOnDisk, DirectoriesAreTheOwnersOnlyWhateverTheUmask) {
    for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{0777}}) {
        const TemporaryDirectory root;
        const Umask umask(mask);
        const auto made = files().createDirectory(root / "a/b/c");
        ASSERT_TRUE(made) << made.error().description;
        for (const char* name : {"a", "a/b", "a/b/c"}) {
            EXPECT_EQ(modeOf(root / name), 0700u) << name << " with umask " << mask;
        }
    }
}

TEST_P(FileManagerOnDisk, AnExistingDirectoryBecomesTheOwnersOnly) {
    const TemporaryDirectory root;
    ASSERT_EQ(mkdir((root / "open").c_str(), 0755), 0);
    chmod((root / "open").c_str(), 0755);
    EXPECT_TRUE(files().createDirectory(root / "open"));
    EXPECT_EQ(modeOf(root / "open"), 0700u);
}

TEST_P(FileManagerOnDisk, TheDirectoryOfAnotherUserIsRefused) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give a directory away";
    }
    const TemporaryDirectory root;
    constexpr uid_t nobody = 65534;
    ASSERT_EQ(mkdir((root / "foreign").c_str(), 0777), 0);
    ASSERT_EQ(chown((root / "foreign").c_str(), nobody, nobody), 0);
    const auto made = files().createDirectory(root / "foreign");
    ASSERT_FALSE(made);
    EXPECT_NE(made.error().description.find("foreign"), std::string::npos) << made.error().description;
}

TEST_P(FileManagerOnDisk, ALinkIsNotTakenForTheDirectoryItPointsTo) {
    const TemporaryDirectory root;
    fs::create_directory(root / "target");
    writeFile(root / "target/secret", "x");
    fs::create_directory_symlink(root / "target", root / "link");
    EXPECT_FALSE(files().createDirectory(root / "link"));
    EXPECT_FALSE(files().createDirectory(root / "link/"));
    EXPECT_FALSE(files().contentsOfDirectory(root / "link"));
    EXPECT_FALSE(files().contentsOfDirectory(root / "link/"));
    EXPECT_FALSE(files().createFile(root / "link/new"));
    EXPECT_TRUE(files().createDirectory(root / "link/below")) << "links further up are followed";
}

TEST_P(FileManagerOnDisk, ADanglingLinkExistsAndIsListed) {
    const TemporaryDirectory root;
    fs::create_symlink("nowhere", root / "dangling");
    EXPECT_TRUE(files().itemExists(root / "dangling"));
    EXPECT_EQ(files().contentsOfDirectory(root.path()).value(), std::vector{root / "dangling"});
}

TEST_P(FileManagerOnDisk, RemovesALinkAndNotItsTarget) {
    const TemporaryDirectory root;
    writeFile(root / "target", "x");
    fs::create_symlink(root / "target", root / "link");
    EXPECT_TRUE(files().removeItem(root / "link"));
    EXPECT_TRUE(fs::exists(root / "target"));
}

TEST_P(FileManagerOnDisk, ReadsRegularFilesOnly) {
    const TemporaryDirectory root;
    writeFile(root / "file", "x");
    fs::create_symlink(root / "file", root / "link");
    ASSERT_EQ(mkfifo((root / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(files().readFile(root / "link", 10));
    EXPECT_FALSE(files().readFile(root / "pipe", 10)) << "and does not wait for a writer";
}

TEST_P(FileManagerOnDisk, AFileIsTheOwnersOnlyWhateverTheUmask) {
    for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{0777}}) {
        const TemporaryDirectory root;
        const Umask umask(mask);
        const auto written = writeWhole(files(), root / "chunk", "x");
        ASSERT_TRUE(written) << written.error().description;
        EXPECT_EQ(modeOf(root / "chunk"), 0600u) << "with umask " << mask;
    }
}

TEST_P(FileManagerOnDisk, ALinkThatHasTheNameIsLeftAsItWas) {
    const TemporaryDirectory root;
    writeFile(root / "outside", "mine");
    fs::create_directory(root / "store");
    fs::create_symlink(root / "outside", root / "store/link");
    fs::create_symlink(root / "planted", root / "store/dangling");
    for (const char* name : {"link", "dangling"}) {
        EXPECT_FALSE(writeWhole(files(), root / "store" / name, "new")) << name;
    }
    EXPECT_EQ(files().readFile(root / "outside", 10).value_or("error"), "mine");
    EXPECT_FALSE(fs::exists(root / "planted"));
    EXPECT_EQ(files().contentsOfDirectory(root / "store").value().size(), 2u);
}

TEST_P(FileManagerOnDisk, ALinkPlantedWhileTheFileIsWrittenIsNotFollowed) {
    const TemporaryDirectory root;
    writeFile(root / "outside", "mine");
    auto file = files().createFile(root / "chunk");
    ASSERT_TRUE(file);
    EXPECT_TRUE((*file)->write(bytes("frames")));
    fs::create_symlink(root / "outside", root / "chunk");
    EXPECT_FALSE((*file)->commit());
    EXPECT_EQ(files().readFile(root / "outside", 10).value_or("error"), "mine");
    EXPECT_TRUE(fs::is_symlink(root / "chunk"));
}

TEST_P(FileManagerOnDisk, AFileStaysInTheDirectoryItWasBegunIn) {
    const TemporaryDirectory root;
    fs::create_directory(root / "store");
    fs::create_directory(root / "elsewhere");
    auto file = files().createFile(root / "store/chunk");
    ASSERT_TRUE(file);
    fs::rename(root / "store", root / "moved");
    fs::create_directory_symlink(root / "elsewhere", root / "store");
    EXPECT_TRUE((*file)->commit());
    EXPECT_TRUE(fs::exists(root / "moved/chunk"));
    EXPECT_TRUE(fs::is_empty(root / "elsewhere"));
}

TEST_P(FileManagerOnDisk, ADirectoryThatTakesNoFilesIsAnError) {
    EXPECT_FALSE(writeWhole(files(), "/proc/chunk", "x"));
}

}  // namespace mireth::test
