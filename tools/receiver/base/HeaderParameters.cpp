// Written without regular expressions: what is read here is hostile and may be long.
#include "base/HeaderParameters.hpp"

#include <algorithm>

namespace mireth::receiver {
namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Takes the value of a parameter off the front of `rest`.
std::optional<std::string> takeValue(std::string_view& rest) {
    if (!rest.starts_with('"')) {
        const auto end = std::min(rest.find(';'), rest.size());
        const auto token = trimmedValue(rest.substr(0, end));
        rest.remove_prefix(end);
        return token.empty() ? std::nullopt : std::optional<std::string>(token);
    }
    const auto end = rest.find('"', 1);
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    std::string value(rest.substr(1, end - 1));
    rest = trimmedValue(rest.substr(end + 1));
    return value;
}

}  // namespace

std::string_view trimmedValue(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) { return lower(x) == lower(y); });
}

std::optional<std::string> HeaderParameters::find(std::string_view name) const {
    for (const auto& [key, value_] : parameters) {
        if (equalsIgnoringCase(key, name)) {
            return value_;
        }
    }
    return std::nullopt;
}

std::optional<HeaderParameters> headerParameters(std::string_view text) {
    const auto end = std::min(text.find(';'), text.size());
    HeaderParameters result{.value = std::string(trimmedValue(text.substr(0, end))), .parameters = {}};
    std::string_view rest = text.substr(end);
    while (!rest.empty()) {
        rest.remove_prefix(1);  // the ';'
        const auto equals = rest.find('=');
        if (equals == std::string_view::npos) {
            return std::nullopt;
        }
        std::string name(trimmedValue(rest.substr(0, equals)));
        rest = trimmedValue(rest.substr(equals + 1));
        auto value = takeValue(rest);
        if (name.empty() || !value || result.find(name) || (!rest.empty() && !rest.starts_with(';'))) {
            return std::nullopt;
        }
        result.parameters.emplace_back(std::move(name), std::move(*value));
    }
    return result;
}

}  // namespace mireth::receiver
