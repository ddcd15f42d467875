#include "platforms/linux/system/JsonFileKeyValueStore.hpp"

#include <utility>

#include "platforms/linux/system/UserDirectories.hpp"

namespace mireth::platform {

namespace {

std::string findFile(const std::optional<std::filesystem::path>& given) {
    if (given) {
        return given->native();
    }
    const auto directory = userDirectory("XDG_CONFIG_HOME", ".config");
    return directory ? (*directory / "mireth" / "defaults.json").native() : std::string();
}

}  // namespace

JsonFileKeyValueStore::JsonFileKeyValueStore(const std::optional<std::filesystem::path>& file)
    : path_(findFile(file)) {
    synchronize();
}

bool JsonFileKeyValueStore::synchronize() {
    auto read = path_.empty() ? std::expected<JsonTexts, JsonFileError>() : readJsonTexts(path_);
    const std::lock_guard lock(mutex_);
    if (!read && !read.error().isMissing) {
        error_ = std::move(read.error().description);
        return false;
    }
    texts_ = read ? std::move(read->texts) : TextMap();
    error_.clear();
    return true;
}

std::optional<std::string> JsonFileKeyValueStore::string(std::string_view key) const {
    const std::lock_guard lock(mutex_);
    const auto found = texts_.find(key);
    return found == texts_.end() ? std::nullopt : std::optional(found->second);
}

std::string JsonFileKeyValueStore::error() const {
    const std::lock_guard lock(mutex_);
    return error_;
}

}  // namespace mireth::platform
