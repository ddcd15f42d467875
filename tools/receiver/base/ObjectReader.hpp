// Takes the members out of a small JSON object whose keys are all known, each exactly once. Used for request
// bodies. Included by .cpp files only, as it names the JSON library's type.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace mireth::receiver {

/// Reads members one by one and remembers the first thing that was wrong, so that a caller checks once at the
/// end.
class ObjectReader {
  public:
    /// `json` must outlive the reader.
    explicit ObjectReader(const nlohmann::ordered_json& json) : json_(json) {
        if (!json.is_object()) {
            complain("not a JSON object");
        }
    }

    /// The string under `key`; must not be empty or longer than 1,024 bytes.
    std::string text(const char* key) {
        const auto* const value = take(key);
        if (value == nullptr || !value->is_string()) {
            complain("\"" + std::string(key) + "\" must be a string");
            return {};
        }
        auto result = value->get<std::string>();
        if (result.empty() || result.size() > 1024) {
            complain("\"" + std::string(key) + "\" is empty or too long");
        }
        return result;
    }
    /// The signed 64-bit integer under `key`.
    std::int64_t whole(const char* key) {
        const auto* const value = take(key);
        const bool fits = value != nullptr && value->is_number_integer() &&
                          !(value->is_number_unsigned() && value->get<std::uint64_t>() > INT64_MAX);
        if (!fits) {
            complain("\"" + std::string(key) + "\" must be a 64-bit integer");
            return 0;
        }
        return value->get<std::int64_t>();
    }
    bool boolean(const char* key) {
        const auto* const value = take(key);
        if (value == nullptr || !value->is_boolean()) {
            complain("\"" + std::string(key) + "\" must be true or false");
            return false;
        }
        return value->get<bool>();
    }
    void complain(const std::string& what) {
        if (complaint_.empty()) {
            complaint_ = what;
        }
    }
    /// Empty when every member was as asked and the object holds no others.
    std::string complaint() {
        if (json_.is_object() && json_.size() > taken_) {
            complain("it has a key too many");
        }
        return complaint_;
    }

  private:
    const nlohmann::ordered_json* take(const char* key) {
        if (!json_.is_object() || !json_.contains(key)) {
            return nullptr;
        }
        ++taken_;
        return &json_.at(key);
    }

    const nlohmann::ordered_json& json_;
    std::size_t taken_ = 0;
    std::string complaint_;
};

}  // namespace mireth::receiver
