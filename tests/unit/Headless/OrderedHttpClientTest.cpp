// Requests in flight: counted, put in order, cancelled.
#include "MirethVex/Headless/OrderedHttpClient.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "MirethVex/Headless/VirtualMainQueue.hpp"
#include "support/SendAndWait.hpp"

namespace mireth::headless {
namespace {

using namespace std::chrono_literals;
using platform::HttpRequest;
using platform::HttpResult;
using platform::UrlResponse;
using test::requestTo;
using ::testing::ElementsAre;

/// A client whose answers come when the test says so, on the test's thread.
class HandDrivenClient final : public platform::HttpClient {
  public:
    AnyCancellable send(HttpRequest request, Completion completion) override {
        urls.push_back(request.url);
        completions.push_back(std::move(completion));
        return AnyCancellable([this] { ++cancelled; });
    }
    void answer(std::size_t index) { completions.at(index)(UrlResponse()); }

    std::vector<std::string> urls;
    std::vector<Completion> completions;
    int cancelled = 0;
};

class OrderedHttpClientTest : public ::testing::Test {
  protected:
    AnyCancellable send(OrderedHttpClient& through, const std::string& url) {
        return through.send(requestTo(url), [this, url](const HttpResult&) {
            answered.push_back(url);
            onMain.push_back(queue->isCurrent());
        });
    }

    std::shared_ptr<VirtualMainQueue> queue = std::make_shared<VirtualMainQueue>();
    std::shared_ptr<HandDrivenClient> inner = std::make_shared<HandDrivenClient>();
    OrderedHttpClient client{inner, queue->inFlight(), OrderedHttpClient::Delivery::inOrderOnLoop};
    std::vector<std::string> answered;
    std::vector<bool> onMain;
};

TEST_F(OrderedHttpClientTest, AnswersComeInTheOrderOfTheRequestsInTheBackground) {
    const auto first = send(client, "a");
    const auto second = send(client, "b");
    inner->answer(1);
    EXPECT_TRUE(answered.empty());
    inner->answer(0);
    EXPECT_TRUE(answered.empty());
    queue->drain();
    EXPECT_THAT(answered, ElementsAre("a", "b"));
    EXPECT_THAT(onMain, ElementsAre(false, false));
}

TEST_F(OrderedHttpClientTest, WhatAnAnswerSetsOffRunsBeforeTheNextAnswer) {
    std::vector<std::string> log;
    const auto first = client.send(requestTo("a"), [&](const HttpResult&) {
        log.emplace_back("answer a");
        queue->post([&] { log.emplace_back("after a"); });
    });
    const auto second = client.send(requestTo("b"), [&](const HttpResult&) { log.emplace_back("answer b"); });
    inner->answer(0);
    inner->answer(1);
    queue->drain();
    EXPECT_THAT(log, ElementsAre("answer a", "after a", "answer b"));
}

TEST_F(OrderedHttpClientTest, TheLoopWaitsForAnAnswerWithoutLettingTimePass) {
    const auto token = send(client, "slow");
    queue->postAfter(platform::Seconds(1), [this] { answered.emplace_back("timer"); });
    std::thread network([this] {
        std::this_thread::sleep_for(20ms);
        inner->answer(0);
    });
    queue->advance(platform::Seconds(1));
    network.join();
    EXPECT_THAT(answered, ElementsAre("slow", "timer"));
}

TEST_F(OrderedHttpClientTest, ADroppedTokenEndsTheRequestAndItsCompletion) {
    auto token = send(client, "a");
    const auto other = send(client, "b");
    token.cancel();
    EXPECT_EQ(inner->cancelled, 1);
    inner->answer(0);
    inner->answer(1);
    queue->drain();
    EXPECT_THAT(answered, ElementsAre("b"));
}

TEST_F(OrderedHttpClientTest, ATokenDroppedAfterTheAnswerCameStillHoldsItBack) {
    auto token = send(client, "a");
    inner->answer(0);
    token.cancel();
    queue->drain();
    EXPECT_TRUE(answered.empty());
}

TEST_F(OrderedHttpClientTest, DestructionEndsWhatIsInFlight) {
    auto brief = std::make_unique<OrderedHttpClient>(inner, queue->inFlight(),
                                                     OrderedHttpClient::Delivery::inOrderOnLoop);
    const auto token = send(*brief, "a");
    inner->answer(0);
    brief.reset();
    queue->drain();
    EXPECT_TRUE(answered.empty());
    EXPECT_EQ(queue->inFlight()->count(), 0U);
}

TEST_F(OrderedHttpClientTest, AsTheyComeDeliversAtOnceAndCountsUntilThen) {
    OrderedHttpClient eager(inner, queue->inFlight(), OrderedHttpClient::Delivery::asTheyCome);
    const auto first = send(eager, "a");
    const auto second = send(eager, "b");
    EXPECT_EQ(queue->inFlight()->count(), 2U);
    inner->answer(1);
    EXPECT_THAT(answered, ElementsAre("b"));
    EXPECT_EQ(queue->inFlight()->count(), 1U);
    inner->answer(0);
    EXPECT_EQ(queue->inFlight()->count(), 0U);
}

}  // namespace
}  // namespace mireth::headless
