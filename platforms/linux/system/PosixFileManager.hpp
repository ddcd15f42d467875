// Files of a Linux device.
#pragma once

#include <filesystem>
#include <optional>

#include "MirethVex/Platform/FileManager.hpp"

namespace mireth::platform {

struct PosixFileManagerOptions {
    /// Stands for the user caches directory. Absent: $XDG_CACHE_HOME when it is an absolute path, else
    /// ~/.cache (XDG Base Directory Specification 0.8).
    std::optional<std::filesystem::path> cachesDirectory;
    /// False: a pending file always has a name. True: only on file systems that cannot do without.
    bool unnamedPendingFiles = true;
};

/// Links in the last component are refused or treated as themselves; links further up are followed, since
/// people move their cache to other disks. Files are not synced: a crash of the machine may lose them.
class PosixFileManager final : public FileManager {
  public:
    /// Reads the environment; nothing later does.
    explicit PosixFileManager(PosixFileManagerOptions options = {});

    FileResult<std::filesystem::path> userCachesDirectory() override;
    bool itemExists(const std::filesystem::path& path) override;
    FileResult<void> createDirectory(const std::filesystem::path& path) override;
    FileResult<std::vector<std::filesystem::path>> contentsOfDirectory(
        const std::filesystem::path& path) override;
    FileResult<void> removeItem(const std::filesystem::path& path) override;
    FileResult<std::string> readFile(const std::filesystem::path& path, std::uint64_t maxBytes) override;
    /// The directory itself must not be a link. While the file is pending it has no name at all, or, where
    /// the file system needs one, a name that begins with ".pending-" beside its final one.
    FileResult<std::unique_ptr<PendingFile>> createFile(const std::filesystem::path& path) override;

  private:
    const FileResult<std::filesystem::path> cachesDirectory_;
    const bool unnamedPendingFiles_;
};

}  // namespace mireth::platform
