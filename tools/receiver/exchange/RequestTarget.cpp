// Splits first and decodes afterwards: an escaped separator is data.
#include "exchange/RequestTarget.hpp"

#include <algorithm>

#include "base/PercentDecoding.hpp"

namespace mireth::receiver {
namespace {

// Cuts `rest` at its first `separator` and returns what stood before it.
std::string_view takeUntil(std::string_view& rest, char separator) {
    const auto end = std::min(rest.find(separator), rest.size());
    const auto piece = rest.substr(0, end);
    rest.remove_prefix(std::min(rest.size(), end + 1));
    return piece;
}

std::optional<std::string> itemOf(std::string_view query, std::string_view name) {
    while (!query.empty()) {
        std::string_view item = takeUntil(query, '&');
        if (takeUntil(item, '=') == name) {
            auto value = percentDecoded(item);
            return value ? std::optional(std::move(*value)) : std::nullopt;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> RequestTarget::queryItem(std::string_view name) const {
    return itemOf(query, name);
}

std::optional<std::string> RequestTarget::formItem(std::string_view name) const {
    std::string plusless = query;
    std::ranges::replace(plusless, '+', ' ');
    return itemOf(plusless, name);
}

std::optional<RequestTarget> parseTarget(std::string_view target) {
    std::string_view path = takeUntil(target, '?');
    if (!path.starts_with('/')) {
        return std::nullopt;
    }
    RequestTarget result{.segments = {}, .query = std::string(target)};
    while (!path.empty()) {
        path.remove_prefix(1);  // the '/'
        const auto raw = path.substr(0, path.find('/'));
        path.remove_prefix(raw.size());
        auto segment = percentDecoded(raw);
        if (!segment) {
            return std::nullopt;
        }
        result.segments.push_back(std::move(*segment));
    }
    return result;
}

}  // namespace mireth::receiver
