// Checked values of the configuration file. Every key is looked at and an unknown one is an error, so that a
// misspelt setting is never silently a default. Included by .cpp files only, as it names the JSON library's
// type.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

namespace mireth::receiver {

using ConfigJson = nlohmann::ordered_json;

/// Carries what is wrong, and where in the file, out of the nested readers. Config catches it.
struct ConfigComplaint : std::runtime_error {
    ConfigComplaint(const std::string& where, const std::string& why)
        : std::runtime_error(where + ": " + why) {}
};

/// The place of `key` in the object at `where`.
std::string memberOf(const std::string& where, std::string_view key);

// All of these throw ConfigComplaint. `where` is the place of the value, or of the object.

/// Always throws: `value` must be `what`, and is not.
[[noreturn]] void complainOf(const ConfigJson& value, const std::string& where, const std::string& what);
void requireObject(const ConfigJson& value, const std::string& where);
void refuseUnknown(const ConfigJson& object, const std::set<std::string_view>& known,
                   const std::string& where);
/// A text of at most 256 bytes without control characters.
std::string textOf(const ConfigJson& value, const std::string& where);
/// The text under `key`, which must be there and must not be empty.
std::string requiredText(const ConfigJson& object, const char* key, const std::string& where);
double numberOf(const ConfigJson& value, double least, double most, const std::string& where);
/// The whole number from 1 to `most` under `key`; none when there is no such key.
std::optional<std::uint64_t> wholeOf(const ConfigJson& object, const char* key, std::uint64_t most,
                                     const std::string& where);

/// The same, put into `into` when it is there.
template <typename Integer>
void readWhole(const ConfigJson& object, const char* key, Integer most, const std::string& where,
               Integer& into) {
    if (const auto value = wholeOf(object, key, static_cast<std::uint64_t>(most), where)) {
        into = static_cast<Integer>(*value);
    }
}

}  // namespace mireth::receiver
