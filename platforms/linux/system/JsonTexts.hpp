// Reads the texts of a small JSON file. Used by the defaults store and the information dictionary.
#pragma once

#include <expected>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace mireth::platform {

using TextMap = std::map<std::string, std::string, std::less<>>;

/// The members of an object: those that are texts, and the keys of the others.
struct JsonTexts {
    TextMap texts;
    std::vector<std::string> otherKeys;
};

/// What went wrong, in words that name the file.
struct JsonFileError {
    std::string description;
    /// There is no such file.
    bool isMissing = false;
};

/// The members of the file's object. An error for a file over 1 MiB, nested deeper than 32, that is not JSON
/// (RFC 8259), or whose top is no object.
std::expected<JsonTexts, JsonFileError> readJsonTexts(const std::string& path);

}  // namespace mireth::platform
