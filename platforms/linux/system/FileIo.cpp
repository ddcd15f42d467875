#include "platforms/linux/system/FileIo.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "platforms/linux/system/FileDescriptor.hpp"

namespace mireth::platform {

std::optional<std::string> readUpTo(int descriptor, std::uint64_t maxBytes) {
    std::string content;
    std::array<char, std::size_t{16} * 1024> buffer{};
    while (content.size() <= maxBytes) {
        const std::uint64_t wanted = std::min<std::uint64_t>(buffer.size(), maxBytes - content.size() + 1);
        const ssize_t got = read(descriptor, buffer.data(), static_cast<std::size_t>(wanted));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            break;
        }
        content.append(buffer.data(), static_cast<std::size_t>(got));
    }
    return content;
}

bool writeAll(int descriptor, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

std::optional<std::string> readSmallFile(const std::string& path, std::uint64_t maxBytes) {
    // Not blocking: opening a pipe that nobody writes to would wait for ever.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status{};
    if (!file || fstat(file.get(), &status) != 0) {
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        errno = ENOTSUP;
        return std::nullopt;
    }
    auto content = readUpTo(file.get(), maxBytes);
    if (content && content->size() > maxBytes) {
        errno = EFBIG;
        return std::nullopt;
    }
    return content;
}

}  // namespace mireth::platform
