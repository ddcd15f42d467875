#include "Platform/Async/SendRequest.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "support/AsyncPhone.hpp"
#include "support/FakeHttpClient.hpp"

namespace mireth {
namespace {

using test::AsyncPhone;
using test::FakeHttpClient;

class SendRequest : public testing::Test {
  protected:
    Task<void> send(std::shared_ptr<int> held = nullptr) {
        platform::HttpRequest request;
        request.url = "https://h.test/";
        auto sending = sendRequest(client, std::move(request));
        auto answer = co_await std::move(sending);
        (void)held;
        resumedInBackground = phone.backgroundExecutor->isRunning();
        result = std::move(answer);
    }

    AsyncPhone phone;
    std::shared_ptr<FakeHttpClient> client = std::make_shared<FakeHttpClient>(phone.backgroundExecutor);
    std::optional<platform::HttpResult> result;
    bool resumedInBackground = false;
};

TEST_F(SendRequest, ResumesOnTheCallersExecutorWithTheAnswer) {
    client->answerAll(FakeHttpClient::response(200, "body"));
    phone.start(send());
    EXPECT_FALSE(result.has_value());
    phone.runUntilIdle();
    ASSERT_TRUE(result.has_value() && result->has_value());
    EXPECT_EQ((*result)->body, "body");
    EXPECT_FALSE(resumedInBackground);
}

TEST_F(SendRequest, ALateAnswerIsWaitedFor) {
    phone.start(send());
    phone.runUntilIdle();
    EXPECT_FALSE(result.has_value());
    client->complete(0, FakeHttpClient::response(201, "late"));
    phone.runUntilIdle();
    ASSERT_TRUE(result.has_value() && result->has_value());
    EXPECT_EQ((*result)->status, 201);
}

TEST_F(SendRequest, ATransportErrorIsPassedOn) {
    client->answerAll(FakeHttpClient::failure("cut off"));
    phone.start(send());
    phone.runUntilIdle();
    ASSERT_TRUE(result.has_value());
    ASSERT_FALSE(result->has_value());
    EXPECT_EQ(result->error().description, "cut off");
}

TEST_F(SendRequest, AClientThatDropsTheCompletionIsATransportError) {
    phone.start(send());
    phone.runUntilIdle();
    client->dropHeld();
    phone.runUntilIdle();
    ASSERT_TRUE(result.has_value());
    ASSERT_FALSE(result->has_value());
    EXPECT_EQ(result->error().description, "No answer.");
}

TEST_F(SendRequest, ARequestThatTheClientNeverAnswersIsFreedWithTheClientAndTheQueues) {
    const auto owned = std::make_shared<int>(1);
    phone.start(send(owned));
    phone.runUntilIdle();
    EXPECT_EQ(owned.use_count(), 2);
    phone.mainQueue.reset();
    client->dropHeld();
    EXPECT_EQ(owned.use_count(), 1);
    EXPECT_FALSE(result.has_value());
}

}  // namespace
}  // namespace mireth
