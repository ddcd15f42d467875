#include "platforms/linux/system/PosixPendingFile.hpp"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platforms/linux/system/FileDescriptor.hpp"
#include "platforms/linux/system/FileErrors.hpp"
#include "platforms/linux/system/FileIo.hpp"
#include "platforms/linux/system/SystemRandomSource.hpp"

namespace mireth::platform {

namespace {

constexpr mode_t ownerOnly = 0600;

/// The name of a directory entry that refers to the open file itself.
std::string descriptorPath(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

/// What both kinds share. A descendant knows how its bytes get their final name.
class PosixPendingFile : public PendingFile {
  public:
    PosixPendingFile(FileDescriptor directory, FileDescriptor file, std::string name, std::string path)
        : directory_(std::move(directory)),
          file_(std::move(file)),
          name_(std::move(name)),
          path_(std::move(path)) {}

    FileResult<void> write(std::span<const std::byte> bytes) override {
        if (committed_) {
            return fileFailure("write", path_, "it is already complete");
        }
        if (!writeAll(file_.get(), bytes)) {
            return fileFailure("write", path_, errno);
        }
        return {};
    }

    FileResult<void> commit() override {
        if (committed_) {
            return fileFailure("complete", path_, "it is already complete");
        }
        if (!giveName()) {
            return fileFailure("create", path_, errno);
        }
        committed_ = true;
        return {};
    }

    /// Makes the file readable by its owner only, whatever the umask took or left. False, with errno, when
    /// that failed.
    bool restrictToOwner() { return fchmod(file_.get(), ownerOnly) == 0; }

  protected:
    /// Puts the file under `name_`; false, with errno, when it could not, also when the name is taken.
    virtual bool giveName() = 0;

    const FileDescriptor directory_;
    const FileDescriptor file_;
    const std::string name_;
    const std::string path_;
    bool committed_ = false;
};

/// A file that no directory lists until it is complete. The kernel drops it when the process dies.
class UnnamedFile final : public PosixPendingFile {
  public:
    using PosixPendingFile::PosixPendingFile;

  private:
    bool giveName() override {
        return linkat(AT_FDCWD, descriptorPath(file_.get()).c_str(), directory_.get(), name_.c_str(),
                      AT_SYMLINK_FOLLOW) == 0;
    }
};

/// For file systems without unnamed files: a hidden name in the same directory.
class HiddenFile final : public PosixPendingFile {
  public:
    HiddenFile(FileDescriptor directory, FileDescriptor file, std::string hiddenName, std::string name,
               std::string path)
        : PosixPendingFile(std::move(directory), std::move(file), std::move(name), std::move(path)),
          hiddenName_(std::move(hiddenName)) {}
    HiddenFile(const HiddenFile&) = delete;
    HiddenFile& operator=(const HiddenFile&) = delete;
    ~HiddenFile() override {
        if (!committed_) {
            unlinkat(directory_.get(), hiddenName_.c_str(), 0);
        }
    }

  private:
    bool giveName() override {
        if (renameat2(directory_.get(), hiddenName_.c_str(), directory_.get(), name_.c_str(),
                      RENAME_NOREPLACE) == 0) {
            return true;
        }
        if (errno != EINVAL && errno != ENOSYS) {
            return false;
        }
        // No such rename here: a second link never replaces anything either.
        if (linkat(directory_.get(), hiddenName_.c_str(), directory_.get(), name_.c_str(), 0) != 0) {
            return false;
        }
        unlinkat(directory_.get(), hiddenName_.c_str(), 0);
        return true;
    }

    const std::string hiddenName_;
};

FileResult<std::unique_ptr<PendingFile>> finished(std::unique_ptr<PosixPendingFile> file,
                                                  const std::string& path) {
    if (!file->restrictToOwner()) {
        return fileFailure("create", path, errno);
    }
    return file;
}

}  // namespace

FileResult<std::unique_ptr<PendingFile>> makePendingFile(const std::string& directory,
                                                         const std::string& name, const std::string& path,
                                                         bool mayBeUnnamed) {
    FileDescriptor parent(open(directory.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!parent) {
        return fileFailure("create", path, errno);
    }
    if (mayBeUnnamed) {
        FileDescriptor file(openat(parent.get(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, ownerOnly));
        // Naming the file needs /proc; a sandbox may lack it.
        if (file && access(descriptorPath(file.get()).c_str(), F_OK) == 0) {
            return finished(std::make_unique<UnnamedFile>(std::move(parent), std::move(file), name, path),
                            path);
        }
    }
    std::string hidden = ".pending-" + SystemRandomSource().uuid();
    FileDescriptor file(openat(parent.get(), hidden.c_str(),
                               O_CREAT | O_EXCL | O_NOFOLLOW | O_WRONLY | O_CLOEXEC, ownerOnly));
    if (!file) {
        return fileFailure("create", path, errno);
    }
    return finished(
        std::make_unique<HiddenFile>(std::move(parent), std::move(file), std::move(hidden), name, path),
        path);
}

}  // namespace mireth::platform
