// What the embedded store does to the files of its videos. Injected, so that a test can see the order of the
// steps and let each of them fail.
#pragma once

#include <sys/types.h>

#include <string_view>

namespace mireth::receiver {

/// Each operation returns what the system's does: something negative when it failed, with the reason in
/// errno. Any thread may call.
class FileSystem {
  public:
    FileSystem() = default;
    FileSystem(const FileSystem&) = delete;
    FileSystem& operator=(const FileSystem&) = delete;
    virtual ~FileSystem() = default;

    /// A new, empty file (0600) in the open directory, for reading and writing; a descriptor of the caller's.
    /// It fails when the name is taken.
    virtual int create(int folder, const char* name) = 0;
    /// Appends; returns how many of the bytes were taken.
    virtual ssize_t write(int file, std::string_view bytes) = 0;
    /// Makes a file's bytes, or the names in a directory, durable.
    virtual int sync(int descriptor) = 0;
    virtual int remove(int folder, const char* name) = 0;
};

}  // namespace mireth::receiver
