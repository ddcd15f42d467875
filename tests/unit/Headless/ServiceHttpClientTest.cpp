// What the client without a network adds to the rules of every client.
#include "MirethVex/Headless/ServiceHttpClient.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "MirethVex/Headless/LoopBackgroundExecutor.hpp"

namespace mireth::headless {
namespace {

using platform::HttpRequest;
using platform::HttpResult;
using ::testing::ElementsAre;

HttpResult answered(std::string body) {
    platform::UrlResponse response;
    response.body = std::move(body);
    return response;
}

class ServiceHttpClientTest : public ::testing::Test {
  protected:
    AnyCancellable send(const std::string& url, std::function<void()> then = {}) {
        HttpRequest request;
        request.url = url;
        return client.send(std::move(request), [this, then = std::move(then)](const HttpResult& result) {
            answers.push_back(result ? result->body : result.error().description);
            if (then) {
                then();
            }
        });
    }

    int errors = 0;
    std::shared_ptr<VirtualMainQueue> queue =
        std::make_shared<VirtualMainQueue>(std::nullopt, [this](std::string_view) { ++errors; });
    ServiceHttpClient client{std::make_shared<LoopBackgroundExecutor>(queue)};
    std::vector<std::string> answers;
};

TEST_F(ServiceHttpClientTest, WithoutAServiceEveryRequestFailsAndIsKept) {
    const auto token = send("a");
    queue->drain();
    EXPECT_THAT(answers, ElementsAre("There is no network."));
    ASSERT_EQ(client.requests().size(), 1U);
    EXPECT_EQ(client.requests()[0].url, "a");
}

TEST_F(ServiceHttpClientTest, TheServiceMayBeSetFromItselfAndFromACompletion) {
    client.setService([this](const HttpRequest&) {
        client.setService([](const HttpRequest&) { return answered("second"); });
        return answered("first");
    });
    const auto first = send("a");
    const auto second = send("b", [this] { client.setService({}); });
    const auto third = send("c");
    queue->drain();
    EXPECT_THAT(answers, ElementsAre("first", "second", "There is no network."));
}

TEST_F(ServiceHttpClientTest, WhatOneRequestThrowsKeepsNoOtherFromItsAnswer) {
    client.setService([](const HttpRequest& request) {
        if (request.url == "bug in the service") {
            throw std::runtime_error("a bug");
        }
        return answered(request.url);
    });
    const auto first = send("bug in the service");
    const auto second = send("bug in the completion", [] { throw std::runtime_error("a bug"); });
    const auto third = send("fine");
    queue->drain();
    EXPECT_THAT(answers, ElementsAre("bug in the completion", "fine"));
    EXPECT_EQ(errors, 2);
}

TEST_F(ServiceHttpClientTest, ACancelledRequestIsNotAnswered) {
    int served = 0;
    client.setService([&](const HttpRequest&) {
        ++served;
        return answered("");
    });
    auto token = send("a");
    token.cancel();
    queue->drain();
    EXPECT_EQ(served, 0);
}

}  // namespace
}  // namespace mireth::headless
