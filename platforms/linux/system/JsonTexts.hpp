// Reads the texts of a small JSON file. Used by the defaults store and the information dictionary.
#pragma once

#include <expected>
#include <map>
#include <string>
#include <string_view>

namespace mireth::platform {

using TextMap = std::map<std::string, std::string, std::less<>>;

/// What went wrong, in words that name the file.
struct JsonFileError {
    std::string description;
    /// There is no such file.
    bool isMissing = false;
};

/// The members of the file's object that are texts; the others are left out. An error for a file over 1 MiB,
/// nested deeper than 32, that is not JSON (RFC 8259), or whose top is no object.
std::expected<TextMap, JsonFileError> readJsonTexts(const std::string& path);

}  // namespace mireth::platform
