// Sends a request and waits for its result. Used by the tests of the HTTP client.
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

/// The error's words; empty, and a failure, when there was an answer.
inline std::string errorOf(const platform::HttpResult& result) {
    EXPECT_FALSE(result.has_value());
    return result ? std::string() : result.error().description;
}

inline bool contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

}  // namespace mireth::test
