// Files, as far as the library needs them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace mireth::platform {

/// What the file system answered, in words that name the operation and the path.
struct FileError {
    std::string description;
};

template <class T>
using FileResult = std::expected<T, FileError>;

/// A file that does not exist until it is complete. Dropping it without `commit` leaves nothing behind.
/// One thread at a time.
class PendingFile {
  public:
    virtual ~PendingFile() = default;
    /// Appends. After a failure, and after `commit`, the file is only good to be dropped.
    virtual FileResult<void> write(std::span<const std::byte> bytes) = 0;
    /// Makes the file appear under its name, whole, readable by this user only (0600). Fails when something
    /// (a file, a link, dangling or not) already has the name, which is then left as it was, and when it was
    /// done before. Nothing is forced to the disk: a loss of power may cost the file.
    virtual FileResult<void> commit() = 0;
};

/// Any thread, also several at once. No operation follows a symbolic link in the last component of its path.
class FileManager {
  public:
    virtual ~FileManager() = default;
    /// The directory whose contents the system may purge. It need not exist.
    virtual FileResult<std::filesystem::path> userCachesDirectory() = 0;
    virtual bool itemExists(const std::filesystem::path& path) = 0;
    /// Creates the directory and the missing ones above it, 0700 whatever the umask. An existing directory of
    /// this user's becomes 0700 too; another user's is an error.
    virtual FileResult<void> createDirectory(const std::filesystem::path& path) = 0;
    /// The full paths of the entries, sorted by name, without "." and "..".
    virtual FileResult<std::vector<std::filesystem::path>> contentsOfDirectory(
        const std::filesystem::path& path) = 0;
    /// Removes a file or a link, not what the link points to. A missing item is an error.
    virtual FileResult<void> removeItem(const std::filesystem::path& path) = 0;
    /// The whole of a regular file. A file over `maxBytes` is an error.
    virtual FileResult<std::string> readFile(const std::filesystem::path& path, std::uint64_t maxBytes) = 0;
    /// Begins a file at `path`, whose directory must exist.
    virtual FileResult<std::unique_ptr<PendingFile>> createFile(const std::filesystem::path& path) = 0;
};

}  // namespace mireth::platform
