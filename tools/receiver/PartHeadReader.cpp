// Header syntax of multipart parts, without regular expressions: input is hostile and may be long.
#include "PartHeadReader.hpp"

#include <algorithm>

namespace mireth::receiver {
namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// Takes the value of a parameter off the front of `rest`.
std::optional<std::string> takeValue(std::string_view& rest) {
    if (!rest.starts_with('"')) {
        const auto end = std::min(rest.find(';'), rest.size());
        const auto token = trimmed(rest.substr(0, end));
        rest.remove_prefix(end);
        return token.empty() ? std::nullopt : std::optional<std::string>(token);
    }
    const auto end = rest.find('"', 1);
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    std::string value(rest.substr(1, end - 1));
    rest = trimmed(rest.substr(end + 1));
    return value;
}

}  // namespace

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
    HeaderParameters result{.value = std::string(trimmed(text.substr(0, end))), .parameters = {}};
    std::string_view rest = text.substr(end);
    while (!rest.empty()) {
        rest.remove_prefix(1);  // the ';'
        const auto equals = rest.find('=');
        if (equals == std::string_view::npos) {
            return std::nullopt;
        }
        std::string name(trimmed(rest.substr(0, equals)));
        rest = trimmed(rest.substr(equals + 1));
        auto value = takeValue(rest);
        if (name.empty() || !value || result.find(name) || (!rest.empty() && !rest.starts_with(';'))) {
            return std::nullopt;
        }
        result.parameters.emplace_back(std::move(name), std::move(*value));
    }
    return result;
}

std::expected<PartHead, std::string> readPartHead(std::string_view lines) {
    std::optional<HeaderParameters> disposition;
    PartHead head;
    while (!lines.empty()) {
        const auto end = std::min(lines.find("\r\n"), lines.size());
        const auto line = lines.substr(0, end);
        lines.remove_prefix(std::min(lines.size(), end + 2));
        const auto colon = line.find(':');
        if (colon == std::string_view::npos || line.find_first_of("\r\n") != std::string_view::npos) {
            return std::unexpected("a part has a malformed header line");
        }
        const auto name = line.substr(0, colon);
        const auto value = trimmed(line.substr(colon + 1));
        if (equalsIgnoringCase(name, "Content-Disposition")) {
            if (disposition) {
                return std::unexpected("a part has two Content-Disposition lines");
            }
            disposition = headerParameters(value);
            if (!disposition) {
                return std::unexpected("a part has a malformed Content-Disposition line");
            }
        } else if (equalsIgnoringCase(name, "Content-Type")) {
            head.contentType = std::string(value);
        }
    }
    if (!disposition || !equalsIgnoringCase(disposition->value, "form-data")) {
        return std::unexpected("a part lacks its form-data Content-Disposition line");
    }
    auto name = disposition->find("name");
    if (!name) {
        return std::unexpected("a part lacks its name");
    }
    head.name = std::move(*name);
    head.filename = disposition->find("filename");
    return head;
}

}  // namespace mireth::receiver
