#include "platforms/linux/system/JsonTexts.hpp"

#include <cerrno>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <system_error>

#include "platforms/linux/system/FileIo.hpp"

namespace mireth::platform {

namespace {

constexpr std::uint64_t maxBytes = std::uint64_t{1024} * 1024;
constexpr int maxDepth = 32;

std::unexpected<JsonFileError> failure(const std::string& path, std::string_view reason) {
    return std::unexpected(JsonFileError{"cannot read '" + path + "': " + std::string(reason)});
}

std::unexpected<JsonFileError> readFailure(const std::string& path, int error) {
    if (error == EFBIG) {
        return failure(path, "it is longer than " + std::to_string(maxBytes) + " bytes");
    }
    if (error == ENOTSUP) {
        return failure(path, "it is not a regular file");
    }
    auto result = failure(path, std::generic_category().message(error));
    result.error().isMissing = error == ENOENT;
    return result;
}

/// Counts brackets outside texts, before the parser spends memory on them.
bool isTooDeep(std::string_view json) {
    int depth = 0;
    bool inText = false;
    for (std::size_t i = 0; i < json.size(); ++i) {
        const char character = json[i];
        if (inText) {
            if (character == '\\') {
                ++i;
            } else if (character == '"') {
                inText = false;
            }
        } else if (character == '"') {
            inText = true;
        } else if (character == '{' || character == '[') {
            if (++depth > maxDepth) {
                return true;
            }
        } else if (character == '}' || character == ']') {
            --depth;
        }
    }
    return false;
}

}  // namespace

std::expected<JsonTexts, JsonFileError> readJsonTexts(const std::string& path) {
    const auto content = readSmallFile(path, maxBytes);
    if (!content) {
        return readFailure(path, errno);
    }
    if (isTooDeep(*content)) {
        return failure(path, "it is nested deeper than " + std::to_string(maxDepth));
    }
    try {
        const auto document = nlohmann::json::parse(*content);
        if (!document.is_object()) {
            return failure(path, "its top is no object");
        }
        JsonTexts read;
        for (const auto& [key, value] : document.items()) {
            if (value.is_string()) {
                read.texts.emplace(key, value.get<std::string>());
            } else {
                read.otherKeys.push_back(key);
            }
        }
        return read;
    } catch (const nlohmann::json::parse_error& error) {
        // The parser's own words quote the file, which may hold anything.
        return failure(path, "it is no JSON from byte " + std::to_string(error.byte) + " on");
    } catch (const nlohmann::json::exception&) {
        return failure(path, "a number in it is too large");
    }
}

}  // namespace mireth::platform
