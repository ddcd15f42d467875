// The headers that every answer carries, whatever it answers. Included by .cpp files only, as it names
// httplib's types.
#pragma once

#include <httplib.h>

#include <string>

#include "base/Environment.hpp"

namespace mireth::receiver {

/// Adds what tells requests apart ("x-transaction-id", the request's own when it is plain, and a fresh
/// "x-request-id") and what browsers are told, unless the answer says otherwise.
void addHeaders(const httplib::Request& request, httplib::Response& response, const Environment& environment);

/// A whole answer of `status`, such as "503 Service Unavailable", for a request that was not read.
std::string bareResponse(const std::string& status, const Environment& environment);

}  // namespace mireth::receiver
