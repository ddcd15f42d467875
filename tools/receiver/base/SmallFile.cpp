// Read to the end, as a pipe has no length.
#include "base/SmallFile.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "base/UniqueFd.hpp"

namespace mireth::receiver {
namespace {

std::unexpected<std::string> failure(const std::string& path, const std::string& why) {
    return std::unexpected(path + ": cannot be read: " + why);
}

}  // namespace

std::expected<std::string, std::string> readSmallFile(const std::string& path, std::size_t most) {
    const auto systemFailure = [&path] { return failure(path, std::generic_category().message(errno)); };
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file) {
        return systemFailure();
    }
    std::string bytes(most + 1, '\0');
    std::size_t size = 0;
    while (size < bytes.size()) {
        const ssize_t count = ::read(file.get(), bytes.data() + size, bytes.size() - size);
        if (count < 0) {
            return systemFailure();
        }
        if (count == 0) {
            bytes.resize(size);
            return bytes;
        }
        size += static_cast<std::size_t>(count);
    }
    return failure(path, "it is longer than " + std::to_string(most) + " bytes");
}

}  // namespace mireth::receiver
