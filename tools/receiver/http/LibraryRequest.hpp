// Takes a request from the HTTP library to the handler, body and all, and the answer back. Included by .cpp
// files only, as it names the HTTP library's types.
#pragma once

#include <httplib.h>

#include "exchange/Exchange.hpp"

namespace mireth::receiver {

/// Takes out of `request` what the library would otherwise act on by itself. To be called before the library
/// looks at it.
void keepFromLibrary(httplib::Request& request);

/// Has `handler` answer a request that keepFromLibrary has seen. `reader` reads its body; null when it has
/// none.
void handOn(RequestHandler& handler, const httplib::Request& request, const httplib::ContentReader* reader,
            httplib::Response& response);

}  // namespace mireth::receiver
