// Hands out the page: plain files, compiled in. The router hands every request here that no one else answers.
#pragma once

#include "exchange/Exchange.hpp"
#include "exchange/RequestTarget.hpp"

namespace mireth::receiver {

/// True when the path is one of the page's: "/", "/sessions/ID", or a file of it.
bool isWebPage(const RequestTarget& target);

/// The file at `target`, for which isWebPage holds.
Answer webPage(const RequestHead& head, const RequestTarget& target);

}  // namespace mireth::receiver
