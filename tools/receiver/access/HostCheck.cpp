// A host is taken apart from its port and looked up.
#include "access/HostCheck.hpp"

#include <arpa/inet.h>

#include <algorithm>

#include "base/HeaderParameters.hpp"

namespace mireth::receiver {
namespace {

bool isPort(std::string_view text) {
    return !text.empty() && text.size() <= 5 &&
           std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool isAddress(int family, std::string_view text) {
    in6_addr unused{};
    return ::inet_pton(family, std::string(text).c_str(), &unused) == 1;
}

}  // namespace

bool isOwnHost(std::string_view host, const std::vector<std::string>& names) {
    if (host.starts_with('[')) {
        const auto end = host.find(']');
        if (end == std::string_view::npos) {
            return false;
        }
        const auto rest = host.substr(end + 1);
        return isAddress(AF_INET6, host.substr(1, end - 1)) &&
               (rest.empty() || (rest.starts_with(':') && isPort(rest.substr(1))));
    }
    const auto colon = host.find(':');
    const auto name = host.substr(0, colon);
    if (colon != std::string_view::npos && !isPort(host.substr(colon + 1))) {
        return false;
    }
    return equalsIgnoringCase(name, "localhost") || isAddress(AF_INET, name) ||
           std::ranges::any_of(names, [&](const auto& known) { return equalsIgnoringCase(name, known); });
}

}  // namespace mireth::receiver
