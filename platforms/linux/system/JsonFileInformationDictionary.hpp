// The information dictionary of a Linux app: what the host gives, else a JSON file shipped with it.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "MirethVex/Platform/InformationDictionary.hpp"
#include "platforms/linux/system/JsonTexts.hpp"

namespace mireth::platform {

/// The file that the environment variable MIRETHVEX_INFO names; nothing when it names none.
std::optional<std::filesystem::path> namedInformationFile();

/// Reads once, at construction.
class JsonFileInformationDictionary final : public InformationDictionary {
  public:
    /// The file that the environment names, which must exist, else MirethVex.info.json beside the executable,
    /// which need not.
    JsonFileInformationDictionary();
    /// A file that must exist. `values` stand in place of those that it has itself.
    explicit JsonFileInformationDictionary(const std::filesystem::path& file, TextMap values = {});
    /// The host's own values; no file is looked at.
    explicit JsonFileInformationDictionary(TextMap values);

    std::optional<std::string> string(std::string_view key) const override;

    /// Why the file could not be used; empty when there was nothing wrong. A bad file gives no values.
    const std::string& error() const noexcept { return error_; }
    /// The keys whose values are no texts, and so count as absent.
    const std::vector<std::string>& keysOfOtherValues() const noexcept { return otherKeys_; }

  private:
    void take(std::expected<JsonTexts, JsonFileError> read, bool mayBeMissing);

    TextMap texts_;
    std::vector<std::string> otherKeys_;
    std::string error_;
};

}  // namespace mireth::platform
