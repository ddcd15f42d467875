// Takes names apart.
#pragma once

#include <string>
#include <string_view>

namespace mireth {

struct UrlParser {
    /// The text before the first "."; the whole text when it has none.
    static std::string extractBrandDc(std::string_view url) {
        return std::string(url.substr(0, url.find('.')));
    }

    /// True for a path that may follow a host (RFC 3986 section 3.3, path-abempty). The URL library takes
    /// any other, and with it reads another host out of an address like https://a@b@c/ than others do.
    static bool mayFollowHost(std::string_view path) { return path.empty() || path.front() == '/'; }
};

}  // namespace mireth
