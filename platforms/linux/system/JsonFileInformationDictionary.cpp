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

std::optional<std::filesystem::path> namedInformationFile() {
    const char* const named = secure_getenv("MIRETHVEX_INFO");
    const bool isNamed = named != nullptr && *named != '\0';
    return isNamed ? std::optional<std::filesystem::path>(named) : std::nullopt;
}

JsonFileInformationDictionary::JsonFileInformationDictionary() {
    const auto named = namedInformationFile();
    const auto file = named.value_or(executableDirectory() / "MirethVex.info.json");
    take(readJsonTexts(file.native()), !named);
}

JsonFileInformationDictionary::JsonFileInformationDictionary(const std::filesystem::path& file,
                                                             TextMap values)
    : texts_(std::move(values)) {
    take(readJsonTexts(file.native()), false);
}

JsonFileInformationDictionary::JsonFileInformationDictionary(TextMap values) : texts_(std::move(values)) {}

void JsonFileInformationDictionary::take(std::expected<JsonTexts, JsonFileError> read, bool mayBeMissing) {
    if (read) {
        texts_.merge(read->texts);
        otherKeys_ = std::move(read->otherKeys);
        std::erase_if(otherKeys_, [this](const std::string& key) { return texts_.contains(key); });
    } else if (!mayBeMissing || !read.error().isMissing) {
        error_ = std::move(read.error().description);
    }
}

std::optional<std::string> JsonFileInformationDictionary::string(std::string_view key) const {
    const auto found = texts_.find(key);
    return found == texts_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace mireth::platform
