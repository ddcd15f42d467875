// Reads the query of a request for the list of sessions. Used by ViewingApi.
#pragma once

#include <expected>
#include <string>

#include "exchange/RequestTarget.hpp"
#include "store/SessionQuery.hpp"

namespace mireth::receiver {

/// The error says which item is unusable. Items of other names are not looked at, and an empty one counts as
/// absent, as forms send it.
std::expected<SessionQuery, std::string> readSessionQuery(const RequestTarget& target);

}  // namespace mireth::receiver
