// The rules of every FileManager: those that show through the interface, and those of a real file system.
#pragma once

#include <string_view>

#include "MirethVex/Platform/FileManager.hpp"
#include "TestSupport.hpp"

namespace mireth::test {

class FileManagerHarness {
  public:
    virtual ~FileManagerHarness() = default;
    virtual platform::FileManager& files() = 0;
    /// What `userCachesDirectory` has to answer.
    virtual std::filesystem::path expectedCachesDirectory() = 0;
    /// A directory of the test's own, which is there and empty.
    virtual std::filesystem::path root() = 0;
};

class FileManagerContract : public ContractTest<FileManagerHarness> {
  protected:
    platform::FileManager& files() { return harness_->files(); }
    std::filesystem::path root() { return harness_->root(); }
};

/// Links, modes and owners, for those whose files are on a disk; the tests look at them there.
class FileManagerOnDisk : public FileManagerContract {};

inline std::span<const std::byte> bytes(std::string_view text) {
    return std::as_bytes(std::span(text));
}

inline platform::FileResult<void> writeWhole(platform::FileManager& files, const std::filesystem::path& path,
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

}  // namespace mireth::test
