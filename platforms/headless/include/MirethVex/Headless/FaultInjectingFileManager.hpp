// A file manager on a disk that fills up and a file system that fails when told.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "MirethVex/Platform/FileManager.hpp"

namespace mireth::headless {

enum class FileOperation {
    userCachesDirectory,
    createDirectory,
    contentsOfDirectory,
    removeItem,
    readFile,
    createFile,
    write,
    commit
};

/// Passes everything on to another file manager, but for the faults. Any thread.
class FaultInjectingFileManager final : public platform::FileManager {
  public:
    explicit FaultInjectingFileManager(std::shared_ptr<platform::FileManager> inner);

    /// How many more bytes fit on the disk. A write that does not fit fails, and its first bytes are written,
    /// as on a real disk. Nothing: no limit.
    void setByteBudget(std::optional<std::uint64_t> bytes);
    /// Lets the next `times` calls of `operation` fail with `description`.
    void failNext(FileOperation operation, std::size_t times = 1,
                  std::string description = "Input/output error");

    platform::FileResult<std::filesystem::path> userCachesDirectory() override;
    bool itemExists(const std::filesystem::path& path) override;
    platform::FileResult<void> createDirectory(const std::filesystem::path& path) override;
    platform::FileResult<std::vector<std::filesystem::path>> contentsOfDirectory(
        const std::filesystem::path& path) override;
    platform::FileResult<void> removeItem(const std::filesystem::path& path) override;
    platform::FileResult<std::string> readFile(const std::filesystem::path& path,
                                               std::uint64_t maxBytes) override;
    platform::FileResult<std::unique_ptr<platform::PendingFile>> createFile(
        const std::filesystem::path& path) override;

  private:
    struct Faults;
    class File;
    const std::shared_ptr<platform::FileManager> inner_;
    const std::shared_ptr<Faults> faults_;
};

}  // namespace mireth::headless
