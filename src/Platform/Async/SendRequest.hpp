// Awaits an HTTP request.
#pragma once

#include <memory>

#include "MirethVex/Platform/HttpClient.hpp"
#include "Platform/Async/Task.hpp"

namespace mireth {

/// Sends `request` and resumes on the caller's executor with the result. Dropping the task ends the request;
/// a client that ends it by itself gives a TransportError.
Task<platform::HttpResult> sendRequest(std::shared_ptr<platform::HttpClient> client,
                                       platform::HttpRequest request);

}  // namespace mireth
