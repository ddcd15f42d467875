#include "platforms/linux/system/UserDirectories.hpp"

#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace mireth::platform {

namespace {

std::optional<std::filesystem::path> absolutePath(const char* text) {
    if (text == nullptr || *text != '/') {
        return std::nullopt;
    }
    return std::filesystem::path(text);
}

std::optional<std::filesystem::path> homeOfAccount() {
    passwd entry{};
    passwd* found = nullptr;
    std::vector<char> buffer(std::size_t{16} * 1024);
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
        return std::nullopt;
    }
    return absolutePath(found->pw_dir);
}

}  // namespace

std::optional<std::filesystem::path> userDirectory(const char* variable, const char* fallback) {
    if (auto named = absolutePath(secure_getenv(variable))) {
        return named;
    }
    auto home = absolutePath(secure_getenv("HOME"));
    if (!home) {
        home = homeOfAccount();
    }
    if (home) {
        *home /= fallback;
    }
    return home;
}

}  // namespace mireth::platform
