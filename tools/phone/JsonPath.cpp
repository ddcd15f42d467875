// Plain keys stand bare, others in brackets.
#include "phone/JsonPath.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace mireth::phone {

namespace {

bool isPlainWord(std::string_view key) {
    return std::ranges::all_of(key, [](char character) {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
               (character >= '0' && character <= '9') || character == '_';
    });
}

}  // namespace

std::string memberPath(const std::string& path, std::string_view key) {
    return path + (isPlainWord(key) ? "." + std::string(key) : "[" + quotedText(key) + "]");
}

std::string elementPath(const std::string& path, std::size_t index) {
    return path + "[" + std::to_string(index) + "]";
}

std::string quotedText(std::string_view text) {
    return nlohmann::json(text.substr(0, 80)).dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
}

}  // namespace mireth::phone
