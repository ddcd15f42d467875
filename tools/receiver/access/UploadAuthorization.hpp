// Authorises uploads: those under the prefix that holds the upload token, when there is one. Used by the
// router.
#pragma once

#include <optional>

#include "exchange/RequestTarget.hpp"
#include "settings/AccessRules.hpp"

namespace mireth::receiver {

/// The target without the token's prefix; none when the token is missing or wrong. Without a token in `rules`
/// every target passes as it is. So do those of log posts: clients build their address from the host alone.
std::optional<RequestTarget> authorizeUpload(const RequestTarget& target, const AccessRules& rules);

}  // namespace mireth::receiver
