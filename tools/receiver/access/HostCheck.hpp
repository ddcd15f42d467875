// Keeps other sites' pages out: a site whose name is made to lead here still calls the receiver by the site's
// name. Used by the router for everything that viewers may see.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mireth::receiver {

/// True when the value of a Host header is "localhost", an address in figures (no name, so no name that leads
/// elsewhere), or one of `names`; with any port.
bool isOwnHost(std::string_view host, const std::vector<std::string>& names);

}  // namespace mireth::receiver
