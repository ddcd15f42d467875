// The adapter between httplib, the HTTP library, and the handler: a request goes over, body and all, and its
// answer comes back. Included by .cpp files only, as it names httplib's types.
#pragma once

#include <httplib.h>

#include "exchange/Exchange.hpp"

namespace mireth::receiver {

/// Takes out of `request` what httplib would otherwise act on by itself. To be called before httplib looks at
/// it.
void hideFromHttplib(httplib::Request& request);

/// Has `handler` answer a request that went through hideFromHttplib. `reader` reads its body; null when it
/// has none.
void dispatch(RequestHandler& handler, const httplib::Request& request, const httplib::ContentReader* reader,
              httplib::Response& response);

}  // namespace mireth::receiver
