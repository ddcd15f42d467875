// The tags by which a browser asks whether what it has is still so. Used by the answers of the viewing API.
#pragma once

#include <string>

#include "exchange/Exchange.hpp"
#include "store/Records.hpp"

namespace mireth::receiver {

/// An ETag of the receiver's own form, from what tells one state from another.
std::string entityTag(const std::string& state);

/// The ETag of everything that is told of one session.
std::string entityTagOf(const SessionSummary& summary);

/// True when the request says that its sender has the answer with that tag. Tags hold no comma.
bool isKnown(const RequestHead& head, const std::string& etag);

/// 304, to a request whose sender has the answer already.
Answer notModified(const std::string& etag);

/// `body`, to be asked for again before it is used again.
Answer tagged(std::string body, const std::string& etag);

}  // namespace mireth::receiver
