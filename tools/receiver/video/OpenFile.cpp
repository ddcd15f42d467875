// pread until all is there.
#include "video/OpenFile.hpp"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace mireth::receiver {

bool readFully(int file, std::uint64_t offset, std::span<unsigned char> into) {
    while (!into.empty()) {
        const ssize_t got = ::pread(file, into.data(), into.size(), static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return false;
        }
        offset += static_cast<std::uint64_t>(got);
        into = into.subspan(static_cast<std::size_t>(got));
    }
    return true;
}

OpenFile::OpenFile(UniqueFd file, std::uint64_t size) : file_(std::move(file)), size_(size) {}

Stored<std::unique_ptr<OpenFile>> OpenFile::of(UniqueFd file) {
    struct stat facts{};
    if (!file || ::fstat(file.get(), &facts) != 0) {
        return std::unexpected(std::generic_category().message(errno));
    }
    return std::unique_ptr<OpenFile>(
        new OpenFile(std::move(file), static_cast<std::uint64_t>(facts.st_size)));
}

bool OpenFile::readAt(std::uint64_t offset, std::span<unsigned char> into) {
    return readFully(file_.get(), offset, into);
}

}  // namespace mireth::receiver
