// Where a user's files go, after the XDG Base Directory Specification 0.8.
#pragma once

#include <filesystem>
#include <optional>

namespace mireth::platform {

/// The directory that the environment variable `variable` names when it is an absolute path, else
/// `fallback` in the user's home; nothing when there is no home. Reads the environment.
std::optional<std::filesystem::path> userDirectory(const char* variable, const char* fallback);

}  // namespace mireth::platform
