#include "platforms/linux/system/JsonFileInformationDictionary.hpp"

#include <stdlib.h>

#include <system_error>
#include <utility>

namespace mireth::platform {

namespace {

/// Empty where /proc is missing.
std::filesystem::path executableDirectory() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

}  // namespace

JsonFileInformationDictionary::JsonFileInformationDictionary() {
    const char* named = secure_getenv("MIRETHVEX_INFO");
    const bool isNamed = named != nullptr && *named != '\0';
    auto read = readJsonTexts(isNamed ? named : (executableDirectory() / "MirethVex.info.json").native());
    if (read) {
        texts_ = std::move(read->texts);
        otherKeys_ = std::move(read->otherKeys);
    } else if (isNamed || !read.error().isMissing) {
        error_ = std::move(read.error().description);
    }
}

JsonFileInformationDictionary::JsonFileInformationDictionary(const std::filesystem::path& file) {
    auto read = readJsonTexts(file.native());
    if (read) {
        texts_ = std::move(read->texts);
        otherKeys_ = std::move(read->otherKeys);
    } else {
        error_ = std::move(read.error().description);
    }
}

JsonFileInformationDictionary::JsonFileInformationDictionary(TextMap values) : texts_(std::move(values)) {}

std::optional<std::string> JsonFileInformationDictionary::string(std::string_view key) const {
    const auto found = texts_.find(key);
    return found == texts_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace mireth::platform
