// Sends a request and waits for its result. For tests of HTTP clients.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <utility>

#include "MirethVex/Platform/HttpClient.hpp"

namespace mireth::test {

inline platform::HttpRequest requestTo(std::string url) {
    platform::HttpRequest request;
    request.url = std::move(url);
    return request;
}

/// A completion that never comes is a failure of its own.
inline platform::HttpResult sendAndWait(platform::HttpClient& client, platform::HttpRequest request) {
    auto promise = std::make_shared<std::promise<platform::HttpResult>>();
    auto result = promise->get_future();
    const AnyCancellable token = client.send(
        std::move(request), [promise](platform::HttpResult value) { promise->set_value(std::move(value)); });
    if (result.wait_for(std::chrono::seconds(30)) != std::future_status::ready) {
        ADD_FAILURE() << "no completion";
        return std::unexpected(platform::TransportError{"TEST: no completion"});
    }
    return result.get();
}

}  // namespace mireth::test
