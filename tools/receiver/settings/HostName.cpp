// Label by label.
#include "settings/HostName.hpp"

#include <arpa/inet.h>

#include <algorithm>
#include <string>

namespace mireth::receiver {
namespace {

constexpr std::size_t longestName = 253;
constexpr std::size_t longestLabel = 63;

bool isLabelCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
}

bool isLabel(std::string_view text) {
    return !text.empty() && text.size() <= longestLabel && std::ranges::all_of(text, isLabelCharacter);
}

}  // namespace

bool isHostName(std::string_view text) {
    in6_addr unused{};
    if (::inet_pton(AF_INET6, std::string(text).c_str(), &unused) == 1) {
        return true;
    }
    if (text.size() > longestName) {
        return false;
    }
    for (auto dot = text.find('.'); dot != std::string_view::npos; dot = text.find('.')) {
        if (!isLabel(text.substr(0, dot))) {
            return false;
        }
        text.remove_prefix(dot + 1);
    }
    return isLabel(text);
}

}  // namespace mireth::receiver
