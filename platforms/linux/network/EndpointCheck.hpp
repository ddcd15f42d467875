// What the base URL of a service must look like. Used by the platform's warnings and by the programs, which
// say so before the first request fails.
#pragma once

#include <string>

namespace mireth::platform {

/// Empty for a URL that paths can be appended to and that the HTTP client will talk to: https, or http when
/// `allowInsecureHttp` or to a loopback host; a host, perhaps a port and a path; no user, query, fragment or
/// slash at the end. Otherwise why not, in words fit for one line; they never hold a password.
std::string complaintAboutEndpoint(const std::string& url, bool allowInsecureHttp);

}  // namespace mireth::platform
