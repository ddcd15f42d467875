#include "HttpClientContract.hpp"

#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace mireth::test {

using platform::HttpRequest;
using platform::HttpResult;
using platform::UrlResponse;
using Seen = HttpClientHarness::Seen;

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(HttpClientContract);

namespace {

UrlResponse answer(int status, std::string body = {}) {
    UrlResponse response;
    response.status = status;
    response.body = std::move(body);
    return response;
}

/// Sends and waits; a completion that never comes is a failure of its own.
HttpResult sendAndWait(platform::HttpClient& client, HttpRequest request) {
    auto promise = std::make_shared<std::promise<HttpResult>>();
    auto result = promise->get_future();
    const AnyCancellable token = client.send(
        std::move(request), [promise](HttpResult value) { promise->set_value(std::move(value)); });
    if (result.wait_for(std::chrono::seconds(30)) != std::future_status::ready) {
        return std::unexpected(platform::TransportError{"TEST: no completion"});
    }
    return result.get();
}

HttpRequest requestTo(const std::string& url) {
    HttpRequest request;
    request.url = url;
    return request;
}

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

TEST_P(HttpClientContract, FollowsNoRedirect) {
    std::atomic<int> requests = 0;
    harness_->setService([&](const Seen&) {
        ++requests;
        UrlResponse response = answer(302);
        response.headers["Location"] = harness_->origin() + "/elsewhere";
        return response;
    });
    const auto result = sendAndWait(harness_->client(), requestTo(harness_->origin() + "/here"));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 302);
    EXPECT_EQ(requests, 1);
}

TEST_P(HttpClientContract, ABodyOfOneMebibyteIsTheLongestTaken) {
    constexpr std::size_t mebibyte = 1024 * 1024;
    harness_->setService([](const Seen& request) {
        return answer(200, std::string(std::stoul(request.path.substr(1)), 'x'));
    });
    const std::string origin = harness_->origin();
    const auto fits = sendAndWait(harness_->client(), requestTo(origin + "/" + std::to_string(mebibyte)));
    ASSERT_TRUE(fits) << fits.error().description;
    EXPECT_EQ(fits->body.size(), mebibyte);
    const auto tooLong =
        sendAndWait(harness_->client(), requestTo(origin + "/" + std::to_string(mebibyte + 1)));
    ASSERT_FALSE(tooLong);
    EXPECT_FALSE(tooLong.error().description.empty());
}

TEST_P(HttpClientContract, SpeaksHttpsOnlyWithOtherHosts) {
    for (const char* url : {"http://192.0.2.1/", "http://sr.mirethvex.example/", "ftp://127.0.0.1/",
                            "file:///etc/hostname", "sr.mirethvex.example", ""}) {
        EXPECT_FALSE(sendAndWait(harness_->client(), requestTo(url))) << url;
    }
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
    const auto gate = std::make_shared<Gate>();
    harness_->setService(gatedService(gate));
    std::atomic<int> completions = 0;
    auto dropped = harness_->client().send(requestTo(harness_->origin() + "/1"),
                                           [&](const HttpResult&) { ++completions; });
    auto cancelled = harness_->client().send(requestTo(harness_->origin() + "/2"),
                                             [&](const HttpResult&) { ++completions; });
    {
        const auto atOnce = harness_->client().send(requestTo(harness_->origin() + "/3"),
                                                    [&](const HttpResult&) { ++completions; });
    }
    ASSERT_TRUE(gate->arrived.waitFor(2));
    dropped = AnyCancellable();
    cancelled.cancel();
    gate->open.increment();
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    EXPECT_EQ(completions, 0);
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
