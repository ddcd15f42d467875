// What is wrong is said in the operator's words: the key and what it must be.
#include "settings/ConfigValues.hpp"

#include <cstddef>

namespace mireth::receiver {
namespace {

constexpr std::size_t longestText = 256;

std::string numberText(double value) {
    const auto text = ConfigJson(value).dump();
    return text.ends_with(".0") ? text.substr(0, text.size() - 2) : text;
}

// What stands there, short enough for one line.
std::string shown(const ConfigJson& value) {
    if (value.is_object()) {
        return "an object";
    }
    if (value.is_array()) {
        return "an array";
    }
    constexpr std::size_t longest = 80;
    const auto text = value.dump(-1, ' ', true, ConfigJson::error_handler_t::replace);
    return text.size() > longest ? text.substr(0, longest) + "…" : text;
}

}  // namespace

std::string memberOf(const std::string& where, std::string_view key) {
    return std::string(where).append(".").append(key);
}

void complainOf(const ConfigJson& value, const std::string& where, const std::string& what) {
    throw ConfigComplaint(where, "must be " + what + ", not " + shown(value));
}

void requireObject(const ConfigJson& value, const std::string& where) {
    if (!value.is_object()) {
        complainOf(value, where, "an object");
    }
}

void refuseUnknown(const ConfigJson& object, const std::set<std::string_view>& known,
                   const std::string& where) {
    for (const auto& [key, value] : object.items()) {
        if (!known.contains(key)) {
            throw ConfigComplaint(where.empty() ? key : memberOf(where, key), "unknown key");
        }
    }
}

std::string textOf(const ConfigJson& value, const std::string& where) {
    if (!value.is_string()) {
        complainOf(value, where, "a string");
    }
    auto text = value.get<std::string>();
    if (text.size() > longestText) {
        throw ConfigComplaint(where, "longer than " + std::to_string(longestText) + " bytes");
    }
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            throw ConfigComplaint(where, "must not hold control characters");
        }
    }
    return text;
}

std::string requiredText(const ConfigJson& object, const char* key, const std::string& where) {
    const auto found = object.find(key);
    if (found == object.end()) {
        throw ConfigComplaint(where + "." + key, "missing");
    }
    auto text = textOf(*found, where + "." + key);
    if (text.empty()) {
        throw ConfigComplaint(where + "." + key, "must not be empty");
    }
    return text;
}

double numberOf(const ConfigJson& value, double least, double most, const std::string& where) {
    if (!value.is_number() || value.get<double>() < least || value.get<double>() > most) {
        complainOf(value, where, "a number from " + numberText(least) + " to " + numberText(most));
    }
    return value.get<double>();
}

std::optional<std::uint64_t> wholeOf(const ConfigJson& object, const char* key, std::uint64_t most,
                                     const std::string& where) {
    const auto found = object.find(key);
    if (found == object.end()) {
        return std::nullopt;
    }
    if (!found->is_number_unsigned() || *found < 1U || *found > most) {
        complainOf(*found, memberOf(where, key), "a whole number from 1 to " + std::to_string(most));
    }
    return found->get<std::uint64_t>();
}

}  // namespace mireth::receiver
