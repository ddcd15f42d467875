// Information dictionary and user defaults held in memory.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "MirethVex/Platform/InformationDictionary.hpp"
#include "MirethVex/Platform/KeyValueStore.hpp"

namespace mireth::headless {

using TextByKey = std::map<std::string, std::string, std::less<>>;

/// Constant; any thread.
class MemoryInformationDictionary final : public platform::InformationDictionary {
  public:
    explicit MemoryInformationDictionary(TextByKey values = {}) : values_(std::move(values)) {}

    std::optional<std::string> string(std::string_view key) const override {
        const auto found = values_.find(key);
        return found == values_.end() ? std::nullopt : std::optional(found->second);
    }

  private:
    const TextByKey values_;
};

/// A store that another process writes to: what is set shows only after the next `synchronize`.
/// Any thread.
class MemoryKeyValueStore final : public platform::KeyValueStore {
  public:
    explicit MemoryKeyValueStore(TextByKey values = {}) : written_(values), read_(std::move(values)) {}

    bool synchronize() override {
        const std::lock_guard lock(mutex_);
        if (readable_) {
            read_ = written_;
        }
        return readable_;
    }

    std::optional<std::string> string(std::string_view key) const override {
        const std::lock_guard lock(mutex_);
        const auto found = read_.find(key);
        return found == read_.end() ? std::nullopt : std::optional(found->second);
    }

    void set(const std::string& key, std::string value) {
        const std::lock_guard lock(mutex_);
        written_[key] = std::move(value);
    }

    /// False: the next `synchronize` fails.
    void setReadable(bool readable) {
        const std::lock_guard lock(mutex_);
        readable_ = readable;
    }

  private:
    mutable std::mutex mutex_;
    TextByKey written_;     // guarded by mutex_
    TextByKey read_;        // guarded by mutex_
    bool readable_ = true;  // guarded by mutex_
};

}  // namespace mireth::headless
