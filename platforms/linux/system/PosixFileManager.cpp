#include "platforms/linux/system/PosixFileManager.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

#include "platforms/linux/system/FileDescriptor.hpp"
#include "platforms/linux/system/FileErrors.hpp"
#include "platforms/linux/system/FileIo.hpp"
#include "platforms/linux/system/PosixPendingFile.hpp"
#include "platforms/linux/system/UserDirectories.hpp"

namespace mireth::platform {

namespace {

constexpr mode_t ownerOnly = 0700;

FileResult<std::filesystem::path> findCachesDirectory(PosixFileManagerOptions& options) {
    if (options.cachesDirectory) {
        return std::move(*options.cachesDirectory);
    }
    if (auto directory = userDirectory("XDG_CACHE_HOME", ".cache")) {
        return std::move(*directory);
    }
    return std::unexpected(FileError{"cannot find the user caches directory: the user has no home"});
}

/// The path as the kernel shall see it. Without slashes at the end, which would make the kernel follow a
/// link in the last component; refused when a zero byte would hide a part of it from the kernel.
FileResult<std::string> kernelPath(std::string_view operation, const std::filesystem::path& path) {
    std::string text = path.native();
    if (text.find('\0') != std::string::npos) {
        std::ranges::replace(text, '\0', '?');
        return fileFailure(operation, text, "the path holds a zero byte");
    }
    while (text.size() > 1 && text.back() == '/') {
        text.pop_back();
    }
    if (text.empty()) {
        return fileFailure(operation, text, ENOENT);
    }
    return text;
}

/// 0, or the errno why there is no directory at `path` that is no link.
int checkDirectory(const std::string& path) {
    struct stat status{};
    if (lstat(path.c_str(), &status) != 0) {
        return errno;
    }
    return S_ISDIR(status.st_mode) ? 0 : ENOTDIR;
}

/// Creates one directory, its parent being there. 0 or errno.
int makeDirectory(const std::string& path) {
    if (mkdir(path.c_str(), ownerOnly) != 0) {
        return errno == EEXIST ? checkDirectory(path) : errno;
    }
    // The umask may have taken bits from the mode; it never adds any.
    struct stat status{};
    if (lstat(path.c_str(), &status) == 0 && (status.st_mode & 07777) == ownerOnly) {
        return 0;
    }
    return fchmodat(AT_FDCWD, path.c_str(), ownerOnly, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

/// Creates the missing directories above `path`, then it. 0 or errno.
int makeDirectories(const std::string& path) {
    const int first = makeDirectory(path);
    const std::size_t slash = path.rfind('/');
    if (first != ENOENT || slash == std::string::npos) {
        return first;
    }
    const std::size_t parentEnd = path.find_last_not_of('/', slash);
    if (parentEnd == std::string::npos) {
        return first;
    }
    const int above = makeDirectories(path.substr(0, parentEnd + 1));
    return above == 0 ? makeDirectory(path) : above;
}

/// Makes a directory that was there before as private as a new one. 0, or the errno why it cannot be: whoever
/// else owns it could put other files in the place of ours.
int claimDirectory(const std::string& path) {
    const FileDescriptor directory(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status{};
    if (!directory || fstat(directory.get(), &status) != 0) {
        return errno;
    }
    if (status.st_uid != geteuid()) {
        return EPERM;
    }
    const bool isPrivate = (status.st_mode & 07777) == ownerOnly;
    return isPrivate || fchmod(directory.get(), ownerOnly) == 0 ? 0 : errno;
}

class DirectoryStream {
  public:
    explicit DirectoryStream(FileDescriptor directory) : stream_(fdopendir(directory.get())) {
        if (stream_ != nullptr) {
            directory.release();
        }
    }
    DirectoryStream(const DirectoryStream&) = delete;
    DirectoryStream& operator=(const DirectoryStream&) = delete;
    ~DirectoryStream() {
        if (stream_ != nullptr) {
            closedir(stream_);
        }
    }

    bool isOpen() const { return stream_ != nullptr; }
    /// Null at the end (errno 0) and on an error.
    const dirent* next() {
        errno = 0;
        return readdir(stream_);
    }

  private:
    DIR* stream_;
};

}  // namespace

PosixFileManager::PosixFileManager(PosixFileManagerOptions options)
    : cachesDirectory_(findCachesDirectory(options)), unnamedPendingFiles_(options.unnamedPendingFiles) {}

FileResult<std::filesystem::path> PosixFileManager::userCachesDirectory() {
    return cachesDirectory_;
}

bool PosixFileManager::itemExists(const std::filesystem::path& path) {
    const auto name = kernelPath("find", path);
    struct stat status{};
    return name && lstat(name->c_str(), &status) == 0;
}

FileResult<void> PosixFileManager::createDirectory(const std::filesystem::path& path) {
    constexpr std::string_view operation = "create the directory";
    const auto name = kernelPath(operation, path);
    if (!name) {
        return std::unexpected(name.error());
    }
    int error = makeDirectories(*name);
    if (error == 0) {
        error = claimDirectory(*name);
    }
    if (error != 0) {
        return fileFailure(operation, *name, error);
    }
    return {};
}

FileResult<std::vector<std::filesystem::path>> PosixFileManager::contentsOfDirectory(
    const std::filesystem::path& path) {
    constexpr std::string_view operation = "list the directory";
    const auto name = kernelPath(operation, path);
    if (!name) {
        return std::unexpected(name.error());
    }
    FileDescriptor directory(open(name->c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!directory) {
        return fileFailure(operation, *name, errno);
    }
    DirectoryStream stream(std::move(directory));
    if (!stream.isOpen()) {
        return fileFailure(operation, *name, errno);
    }
    std::vector<std::string> names;
    while (const dirent* entry = stream.next()) {
        const std::string_view found = entry->d_name;
        if (found != "." && found != "..") {
            names.emplace_back(found);
        }
    }
    if (errno != 0) {
        return fileFailure(operation, *name, errno);
    }
    std::ranges::sort(names);
    std::vector<std::filesystem::path> paths;
    paths.reserve(names.size());
    for (const auto& found : names) {
        paths.push_back(path / found);
    }
    return paths;
}

FileResult<void> PosixFileManager::removeItem(const std::filesystem::path& path) {
    const auto name = kernelPath("remove", path);
    if (!name) {
        return std::unexpected(name.error());
    }
    if (unlink(name->c_str()) != 0) {
        return fileFailure("remove", *name, errno);
    }
    return {};
}

FileResult<std::string> PosixFileManager::readFile(const std::filesystem::path& path,
                                                   std::uint64_t maxBytes) {
    const auto name = kernelPath("read", path);
    if (!name) {
        return std::unexpected(name.error());
    }
    // Not blocking: opening a pipe that nobody writes to would wait for ever.
    const FileDescriptor file(open(name->c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status{};
    if (!file || fstat(file.get(), &status) != 0) {
        return fileFailure("read", *name, errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return fileFailure("read", *name, "not a regular file");
    }
    auto content = readUpTo(file.get(), maxBytes);
    if (!content) {
        return fileFailure("read", *name, errno);
    }
    if (content->size() > maxBytes) {
        return fileFailure("read", *name, "it is longer than " + std::to_string(maxBytes) + " bytes");
    }
    return std::move(*content);
}

FileResult<std::unique_ptr<PendingFile>> PosixFileManager::createFile(const std::filesystem::path& path) {
    const auto text = kernelPath("create", path);
    if (!text) {
        return std::unexpected(text.error());
    }
    const std::filesystem::path cleaned(*text);
    const std::string name = cleaned.filename();
    if (name.empty() || name == "." || name == ".." || path.native().back() == '/') {
        return fileFailure("create", path.native(), "that is no name for a file");
    }
    const std::string directory = cleaned.has_parent_path() ? cleaned.parent_path().native() : ".";
    return makePendingFile(directory, name, *text, unnamedPendingFiles_);
}

}  // namespace mireth::platform
