// Owns a file descriptor.
#pragma once

#include <unistd.h>

#include <utility>

namespace mireth::platform {

/// Closes on destruction. Move-only; -1 means none.
class FileDescriptor {
  public:
    explicit FileDescriptor(int descriptor = -1) noexcept : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }

    int get() const noexcept { return descriptor_; }
    /// The caller owns it from then on.
    int release() noexcept { return std::exchange(descriptor_, -1); }
    explicit operator bool() const noexcept { return descriptor_ >= 0; }

  private:
    int descriptor_;
};

}  // namespace mireth::platform
