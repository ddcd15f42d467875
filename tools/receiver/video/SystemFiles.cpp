// One system call each.
#include "video/SystemFiles.hpp"

#include <fcntl.h>
#include <unistd.h>

namespace mireth::receiver {

int SystemFiles::create(int folder, const char* name) {
    return ::openat(folder, name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
}

ssize_t SystemFiles::write(int file, std::string_view bytes) {
    return ::write(file, bytes.data(), bytes.size());
}

int SystemFiles::sync(int descriptor) {
    return ::fsync(descriptor);
}

int SystemFiles::remove(int folder, const char* name) {
    return ::unlinkat(folder, name, 0);
}

}  // namespace mireth::receiver
