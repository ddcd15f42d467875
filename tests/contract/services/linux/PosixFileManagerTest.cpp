#include "platforms/linux/system/PosixFileManager.hpp"

#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>

#include <span>
#include <string>

#include "TestSupport.hpp"

namespace mireth::platform {

using test::TemporaryDirectory;

namespace {

/// Sets an environment variable for the length of a test.
class Environment {
  public:
    Environment(const char* name, const char* value) : name_(name) {
        const char* const before = getenv(name);
        had_ = before != nullptr;
        before_ = had_ ? before : "";
        value != nullptr ? setenv(name, value, 1) : unsetenv(name);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { had_ ? setenv(name_, before_.c_str(), 1) : unsetenv(name_); }

  private:
    const char* name_;
    bool had_ = false;
    std::string before_;
};

}  // namespace

TEST(PosixFileManager, CachesGoWhereTheEnvironmentSays) {
    const Environment home("HOME", "/home/somebody");
    const Environment xdg("XDG_CACHE_HOME", "/var/caches");
    EXPECT_EQ(PosixFileManager().userCachesDirectory().value(), "/var/caches");
}

TEST(PosixFileManager, ARelativeCacheVariableIsIgnored) {
    const Environment home("HOME", "/home/somebody");
    const Environment xdg("XDG_CACHE_HOME", "caches");
    EXPECT_EQ(PosixFileManager().userCachesDirectory().value(), "/home/somebody/.cache");
}

TEST(PosixFileManager, WithoutAHomeVariableTheAccountsHomeCounts) {
    const Environment home("HOME", nullptr);
    const Environment xdg("XDG_CACHE_HOME", nullptr);
    const auto directory = PosixFileManager().userCachesDirectory();
    if (directory) {
        EXPECT_TRUE(directory->is_absolute());
        EXPECT_EQ(directory->filename(), ".cache");
    } else {
        EXPECT_FALSE(directory.error().description.empty());
    }
}

TEST(PosixFileManager, APendingFileHasNoNameAtAll) {
    const TemporaryDirectory root;
    PosixFileManager files;
    const auto file = files.createFile(root / "chunk");
    ASSERT_TRUE(file) << file.error().description;
    EXPECT_TRUE(std::filesystem::is_empty(root.path()));
}

TEST(PosixFileManager, WhereItNeedsANameThatOneIsHidden) {
    const TemporaryDirectory root;
    PosixFileManager files({.cachesDirectory = {}, .unnamedPendingFiles = false});
    const auto file = files.createFile(root / "chunk");
    ASSERT_TRUE(file) << file.error().description;
    const auto contents = files.contentsOfDirectory(root.path()).value();
    ASSERT_EQ(contents.size(), 1u);
    EXPECT_TRUE(contents.front().filename().native().starts_with(".pending-"));
}

TEST(PosixFileManager, ErrorsNameTheOperationThePathAndTheReason) {
    PosixFileManager files;
    EXPECT_EQ(files.createDirectory("/proc/version/x").error().description,
              "cannot create the directory '/proc/version/x': Not a directory");
    EXPECT_EQ(files.removeItem("/proc/missing").error().description,
              "cannot remove '/proc/missing': No such file or directory");
    EXPECT_EQ(files.readFile("/proc/version", 3).error().description,
              "cannot read '/proc/version': it is longer than 3 bytes");
    EXPECT_EQ(files.contentsOfDirectory("/proc/version").error().description,
              "cannot list the directory '/proc/version': Not a directory");
}

TEST(PosixFileManager, AFileOverTheProcessesLimitIsAnErrorOfTheWrite) {
    const TemporaryDirectory root;
    PosixFileManager files;
    auto file = files.createFile(root / "chunk");
    ASSERT_TRUE(file);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{.rlim_cur = 10, .rlim_max = before.rlim_max};
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string text(100, 'x');
    const auto written = (*file)->write(std::as_bytes(std::span(text)));
    setrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, handler);
    ASSERT_FALSE(written);
    EXPECT_NE(written.error().description.find("chunk': File too large"), std::string::npos)
        << written.error().description;
}

}  // namespace mireth::platform
