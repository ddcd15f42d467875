#include "HttpClientContract.hpp"

#include <atomic>
#include <thread>
#include <vector>

namespace mireth::test {

using platform::HttpRequest;
using platform::HttpResult;
using platform::UrlResponse;
using Seen = HttpClientHarness::Seen;

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(HttpClientContract);

namespace {

/// Holds answers back until the test lets them go. The service may outlast the test's body.
struct Gate {
    Counter arrived;
    Counter open;
};

HttpClientHarness::Service gatedService(const std::shared_ptr<Gate>& gate) {
    return [gate](const Seen&) {
        gate->arrived.increment();
        gate->open.waitFor(1);
        return answer(200);
    };
}

/// Ends one request that the server is answering, and one that was just sent.
void expectNoCompletionAfter(HttpClientHarness& harness, const std::function<void(AnyCancellable&)>& end) {
    const auto gate = std::make_shared<Gate>();
    harness.setService(gatedService(gate));
    std::atomic<int> completions = 0;
    const auto send = [&](const std::string& path) {
        return harness.client().send(requestTo(harness.origin() + path),
                                     [&](const HttpResult&) { ++completions; });
    };
    AnyCancellable running = send("/running");
    ASSERT_TRUE(gate->arrived.waitFor(1));
    AnyCancellable sent = send("/sent");
    end(running);
    end(sent);
    gate->open.increment();
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    EXPECT_EQ(completions, 0);
}

}  // namespace

TEST_P(HttpClientContract, CarriesMethodPathHeadersAndBody) {
    Seen seen;
    harness_->setService([&](const Seen& request) {
        seen = request;
        return answer(200);
    });
    HttpRequest request = requestTo(harness_->origin() + "/a/b%20c?q=1&r=%26");
    request.method = "PUT";
    request.headers = {{"x-client-id", "c1"}, {"Content-Type", "application/json; charset=UTF-8"}};
    request.body = std::string("one\0two", 7);
    const auto result = sendAndWait(harness_->client(), request);
    ASSERT_TRUE(result) << result.error().description;
    EXPECT_EQ(seen.method, "PUT");
    EXPECT_EQ(seen.path, "/a/b%20c?q=1&r=%26");
    EXPECT_EQ(seen.headers["X-Client-Id"], "c1");
    EXPECT_EQ(seen.headers["content-type"], "application/json; charset=UTF-8");
    EXPECT_EQ(seen.body, *request.body);
}

TEST_P(HttpClientContract, GivesStatusHeadersAndBody) {
    harness_->setService([](const Seen&) {
        UrlResponse response = answer(503, "busy");
        response.headers["X-Reason"] = "queue full";
        return response;
    });
    const auto result = sendAndWait(harness_->client(), requestTo(harness_->origin() + "/"));
    ASSERT_TRUE(result) << "a status is an answer, whichever it is";
    EXPECT_TRUE(result->isHttp);
    EXPECT_EQ(result->status, 503);
    EXPECT_EQ(result->headers.find("x-REASON")->second, "queue full");
    EXPECT_EQ(result->body, "busy");
}

TEST_P(HttpClientContract, CompletesOnAnotherThread) {
    harness_->setService([](const Seen&) { return answer(200); });
    std::promise<std::thread::id> thread;
    const auto token = harness_->client().send(
        requestTo(harness_->origin()), [&](HttpResult) { thread.set_value(std::this_thread::get_id()); });
    EXPECT_NE(thread.get_future().get(), std::this_thread::get_id());
}

TEST_P(HttpClientContract, ManyAtOnceAllCompleteOnce) {
    harness_->setService([](const Seen& request) { return answer(200, request.path); });
    constexpr int many = 40;
    std::vector<std::atomic<int>> calls(many);
    std::atomic<int> wrong = 0;
    Counter completed;
    std::mutex mutex;
    std::vector<AnyCancellable> tokens;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = t; i < many; i += 4) {
                const std::string path = "/" + std::to_string(i);
                auto token = harness_->client().send(requestTo(harness_->origin() + path),
                                                     [&, i, path](const HttpResult& result) {
                                                         ++calls[static_cast<std::size_t>(i)];
                                                         wrong += result && result->body == path ? 0 : 1;
                                                         completed.increment();
                                                     });
                const std::lock_guard lock(mutex);
                tokens.push_back(std::move(token));
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    ASSERT_TRUE(completed.waitFor(many));
    EXPECT_EQ(wrong, 0);
    for (const auto& count : calls) {
        EXPECT_EQ(count, 1);
    }
}

TEST_P(HttpClientContract, ACancelledRequestNeverCompletes) {
    expectNoCompletionAfter(*harness_, [](AnyCancellable& token) { token.cancel(); });
}

TEST_P(HttpClientContract, ARequestWhoseTokenIsDroppedNeverCompletes) {
    expectNoCompletionAfter(*harness_, [](AnyCancellable& token) { token = AnyCancellable(); });
}

TEST_P(HttpClientContract, CancellingReleasesWhatTheCompletionOwns) {
    const auto gate = std::make_shared<Gate>();
    harness_->setService(gatedService(gate));
    const auto owned = std::make_shared<int>(0);
    auto token = harness_->client().send(requestTo(harness_->origin()), [owned](const HttpResult&) {});
    ASSERT_TRUE(gate->arrived.waitFor(1));
    token.cancel();
    EXPECT_EQ(owned.use_count(), 1);
    gate->open.increment();
}

TEST_P(HttpClientContract, ACompletionMaySendAndCancel) {
    harness_->setService([](const Seen&) { return answer(200); });
    Counter done;
    AnyCancellable second;
    AnyCancellable first;
    Counter started;
    first = harness_->client().send(requestTo(harness_->origin() + "/1"), [&](const HttpResult&) {
        started.waitFor(1);
        first.cancel();
        second = harness_->client().send(requestTo(harness_->origin() + "/2"),
                                         [&](const HttpResult&) { done.increment(); });
    });
    started.increment();
    EXPECT_TRUE(done.waitFor(1));
    harness_->destroyClient();
}

TEST_P(HttpClientContract, ACompletionMayTakeTheClientWithIt) {
    harness_->setService([](const Seen&) { return answer(200); });
    Counter sent;
    Counter done;
    const auto token = harness_->client().send(requestTo(harness_->origin()), [&](const HttpResult&) {
        sent.waitFor(1);
        harness_->destroyClient();
        done.increment();
    });
    sent.increment();
    EXPECT_TRUE(done.waitFor(1));
}

TEST_P(HttpClientContract, DestructionDropsWhatIsStillRunning) {
    const auto gate = std::make_shared<Gate>();
    harness_->setService(gatedService(gate));
    std::atomic<int> completions = 0;
    const auto owned = std::make_shared<int>(0);
    auto token = harness_->client().send(requestTo(harness_->origin()),
                                         [&completions, owned](const HttpResult&) { ++completions; });
    ASSERT_TRUE(gate->arrived.waitFor(1));
    harness_->destroyClient();
    EXPECT_EQ(completions, 0);
    EXPECT_EQ(owned.use_count(), 1);
    gate->open.increment();
    token.cancel();
}

TEST_P(HttpClientContract, DestructionWaitsForARunningCompletion) {
    harness_->setService([](const Seen&) { return answer(200); });
    Counter started;
    std::atomic<bool> finished = false;
    const auto token = harness_->client().send(requestTo(harness_->origin()), [&](const HttpResult&) {
        started.increment();
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        finished = true;
    });
    ASSERT_TRUE(started.waitFor(1));
    harness_->destroyClient();
    EXPECT_TRUE(finished);
}

}  // namespace mireth::test
