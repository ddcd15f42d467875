// The user defaults of a Linux device: a JSON file in the user's configuration.
#pragma once

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

#include "MirethVex/Platform/KeyValueStore.hpp"
#include "platforms/linux/system/JsonTexts.hpp"

namespace mireth::platform {

/// Reads $XDG_CONFIG_HOME/mireth/defaults.json (~/.config/… when the variable is not an absolute path), or
/// the file it is given. No file means no values, which is no failure.
class JsonFileKeyValueStore final : public KeyValueStore {
  public:
    /// Reads the file a first time.
    explicit JsonFileKeyValueStore(const std::optional<std::filesystem::path>& file = std::nullopt);

    bool synchronize() override;
    std::optional<std::string> string(std::string_view key) const override;

    /// Why the last reading failed; empty when it did not. Any thread.
    std::string error() const;

  private:
    const std::string path_;  // empty when the user has no home

    mutable std::mutex mutex_;
    TextMap texts_;      // guarded by mutex_
    std::string error_;  // guarded by mutex_
};

}  // namespace mireth::platform
