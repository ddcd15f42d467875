// The videos' files through the store's own seam, SQLite's through its layer over the system.
#include "support/WatchedDisk.hpp"

#include <sys/stat.h>

#include <cerrno>
#include <stdexcept>
#include <utility>

#include "video/SystemFiles.hpp"

namespace mireth::receiver::test {

WatchedDisk* WatchedDisk::current_ = nullptr;

class WatchedDisk::Files final : public FileSystem {
  public:
    explicit Files(WatchedDisk& disk) : disk_(disk) {}

    int create(int folder, const char* name) override {
        return refused("video made") ? -1 : system_.create(folder, name);
    }
    ssize_t write(int file, std::string_view bytes) override {
        return refused("video written") ? -1 : system_.write(file, bytes);
    }
    int sync(int descriptor) override {
        struct stat facts{};
        ::fstat(descriptor, &facts);
        return refused(S_ISDIR(facts.st_mode) ? "folder synced" : "video synced") ? -1
                                                                                  : system_.sync(descriptor);
    }
    int remove(int folder, const char* name) override {
        return refused("video removed") ? -1 : system_.remove(folder, name);
    }

  private:
    bool refused(const char* step) {
        errno = disk_.begin(step);
        return errno != 0;
    }

    WatchedDisk& disk_;
    SystemFiles system_;
};

WatchedDisk::WatchedDisk() : system_(sqlite3_vfs_find(nullptr)), watched_(*system_) {
    if (std::exchange(current_, this) != nullptr) {
        throw std::logic_error("one disk at a time");
    }
    watched_.zName = "watched";
    watched_.xOpen = &openFile;
    sqlite3_vfs_register(&watched_, 1);
}

WatchedDisk::~WatchedDisk() {
    sqlite3_vfs_unregister(&watched_);
    sqlite3_vfs_register(system_, 1);
    current_ = nullptr;
}

std::unique_ptr<FileSystem> WatchedDisk::files() {
    return std::make_unique<Files>(*this);
}

void WatchedDisk::fail(const std::string& step, int error) {
    failing_ = step;
    error_ = error;
}

std::vector<std::string> WatchedDisk::takeSteps() {
    return std::exchange(steps_, {});
}

int WatchedDisk::begin(const std::string& step) {
    if (watcher_) {
        watcher_(step);
    }
    if (steps_.empty() || steps_.back() != step) {
        steps_.push_back(step);
    }
    return step == failing_ ? error_ : 0;
}

int WatchedDisk::openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    auto& disk = *current_;
    const int code = disk.system_->xOpen(disk.system_, name, file, flags, outFlags);
    if (code == SQLITE_OK && (flags & SQLITE_OPEN_WAL) != 0) {
        disk.logMethods_ = file->pMethods;
        disk.watchedLogMethods_ = *file->pMethods;
        disk.watchedLogMethods_.xWrite = &writeLog;
        disk.watchedLogMethods_.xSync = &syncLog;
        disk.watchedLogMethods_.xFileControl = &controlLog;
        file->pMethods = &disk.watchedLogMethods_;
    }
    return code;
}

int WatchedDisk::writeLog(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
    const int error = current_->begin("row written");
    if (error != 0) {
        return error == ENOSPC ? SQLITE_FULL : SQLITE_IOERR_WRITE;
    }
    return current_->logMethods_->xWrite(file, bytes, count, offset);
}

int WatchedDisk::syncLog(sqlite3_file* file, int flags) {
    return current_->begin("row synced") != 0 ? SQLITE_IOERR_FSYNC
                                              : current_->logMethods_->xSync(file, flags);
}

int WatchedDisk::controlLog(sqlite3_file* file, int operation, void* argument) {
    const int code = current_->logMethods_->xFileControl(file, operation, argument);
    if (operation == SQLITE_FCNTL_LAST_ERRNO) {
        *static_cast<int*>(argument) = current_->error_;
    }
    return code;
}

}  // namespace mireth::receiver::test
