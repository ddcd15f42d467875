#include "platforms/linux/system/KeyValueFile.hpp"

#include <utility>

namespace mireth::platform {

namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// What a shell would make of the right-hand side; a quote that is never closed lasts to the end.
std::string unquoted(std::string_view text) {
    std::string value;
    char quote = '\0';
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char character = text[i];
        if (character == quote) {
            quote = '\0';
        } else if (quote == '\0' && (character == '"' || character == '\'')) {
            quote = character;
        } else if (character == '\\' && quote != '\'' && i + 1 < text.size()) {
            value += text[++i];
        } else {
            value += character;
        }
    }
    return value;
}

}  // namespace

std::map<std::string, std::string, std::less<>> parseKeyValueFile(std::string_view content) {
    std::map<std::string, std::string, std::less<>> values;
    while (!content.empty()) {
        const std::size_t end = content.find('\n');
        const std::string_view line = trimmed(content.substr(0, end));
        content.remove_prefix(end == std::string_view::npos ? content.size() : end + 1);
        const std::size_t equals = line.find('=');
        if (line.starts_with('#') || equals == std::string_view::npos) {
            continue;
        }
        values.insert_or_assign(std::string(line.substr(0, equals)), unquoted(line.substr(equals + 1)));
    }
    return values;
}

}  // namespace mireth::platform
