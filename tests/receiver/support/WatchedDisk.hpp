// The disk under a store, watched: what is done to its files, in order, and any step of it failing. Used by
// the tests of durability.
#pragma once

#include <sqlite3.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "video/FileSystem.hpp"

namespace mireth::receiver::test {

/// Steps are "video made", "video written", "video synced", "folder synced", "video removed", and, of the
/// write-ahead log of every database that is opened as long as this object lives, "row written" and "row
/// synced". One at a time; one thread at a time.
class WatchedDisk {
  public:
    WatchedDisk();
    WatchedDisk(const WatchedDisk&) = delete;
    WatchedDisk& operator=(const WatchedDisk&) = delete;
    ~WatchedDisk();

    /// For the store. It refers to this object.
    std::unique_ptr<FileSystem> files();

    /// From now on this step fails, with this of the system's errors; "" ends that.
    void fail(const std::string& step, int error = EIO);
    /// Called before each step.
    void watch(std::function<void(const std::string& step)> watcher) { watcher_ = std::move(watcher); }
    /// Of the steps so far, those that follow one of the same name left out; and forgets them.
    std::vector<std::string> takeSteps();

  private:
    class Files;

    /// What the step shall fail with; 0 when it shall not.
    int begin(const std::string& step);
    static int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags);
    static int writeLog(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset);
    static int syncLog(sqlite3_file* file, int flags);
    static int controlLog(sqlite3_file* file, int operation, void* argument);

    static WatchedDisk* current_;

    sqlite3_vfs* const system_;
    sqlite3_vfs watched_;
    const sqlite3_io_methods* logMethods_ = nullptr;  ///< the system's
    sqlite3_io_methods watchedLogMethods_{};
    std::function<void(const std::string&)> watcher_;
    std::vector<std::string> steps_;
    std::string failing_;
    int error_ = 0;
};

}  // namespace mireth::receiver::test
