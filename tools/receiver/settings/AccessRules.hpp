// Who may do what, as the operator decided at start. Constant afterwards.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace mireth::receiver {

struct AccessRules {
    /// Uploads must come under "/t/" and this token; none: under no prefix, from anybody who can connect.
    std::optional<std::string> uploadToken = std::nullopt;
    /// Viewers must log in with it; none: whoever can connect may view.
    std::optional<std::string> viewingToken = std::nullopt;
    /// Names under which viewers may call the receiver, beside "localhost" and any address in figures.
    std::vector<std::string> hosts = {};
    /// Cookies are only ever sent over TLS: the receiver's own, or that of a proxy before it.
    bool secure = false;
};

}  // namespace mireth::receiver
