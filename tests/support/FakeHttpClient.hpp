// An HTTP client whose server is the test: it keeps the requests and answers them as told, at once or later.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "MirethVex/Headless/HttpCall.hpp"
#include "MirethVex/Platform/BackgroundExecutor.hpp"
#include "MirethVex/Platform/HttpClient.hpp"

namespace mireth::test {

/// Answers come on the background executor. Any thread may send. There is no network behind it: any address
/// is good, and no answer too long.
class FakeHttpClient final : public platform::HttpClient {
  public:
    /// Called on the background executor. Nothing: the request is held until `complete`.
    using Answer = std::function<std::optional<platform::HttpResult>(const platform::HttpRequest&)>;

    explicit FakeHttpClient(std::shared_ptr<platform::BackgroundExecutor> background)
        : background_(std::move(background)) {}
    FakeHttpClient(const FakeHttpClient&) = delete;
    FakeHttpClient& operator=(const FakeHttpClient&) = delete;
    ~FakeHttpClient() override {
        for (const auto& call : calls()) {
            call->end();
        }
    }

    static platform::HttpResult response(int status, std::string body,
                                         platform::HeaderFields headers = bothHeaders()) {
        platform::UrlResponse result;
        result.status = status;
        result.body = std::move(body);
        result.headers = std::move(headers);
        return result;
    }
    static platform::HeaderFields bothHeaders() {
        return {{"x-transaction-id", "T1"}, {"x-request-id", "R1"}};
    }
    static platform::HttpResult failure(std::string description) {
        return std::unexpected(platform::TransportError{std::move(description)});
    }

    /// For the requests sent from now on.
    void setAnswer(Answer answer) {
        const std::lock_guard lock(mutex_);
        std::swap(answer_, answer);
    }
    void answerAll(platform::HttpResult result) {
        setAnswer([result = std::move(result)](const auto&) { return result; });
    }
    void holdAll() { setAnswer({}); }

    AnyCancellable send(platform::HttpRequest request, Completion completion) override {
        auto call = std::make_shared<headless::HttpCall>(std::move(completion));
        Answer answer;
        {
            const std::lock_guard lock(mutex_);
            calls_.push_back(call);
            requests_.push_back(request);
            answer = answer_;
        }
        if (answer) {
            background_->post([call, answer = std::move(answer), request = std::move(request)] {
                if (auto result = answer(request)) {
                    call->deliver(std::move(*result));
                }
            });
        }
        return AnyCancellable([call] { call->drop(); });
    }

    std::vector<platform::HttpRequest> requests() const {
        const std::lock_guard lock(mutex_);
        return requests_;
    }

    /// Answers the held request number `index`.
    void complete(std::size_t index, platform::HttpResult result) {
        calls().at(index)->deliver(std::move(result));
    }

    /// True when request number `index` was ended before its completion was called.
    bool isCancelled(std::size_t index) const { return calls().at(index)->isDropped(); }

    /// Drops every held completion uncalled, as a client does that goes away.
    void dropHeld() {
        for (const auto& call : calls()) {
            call->drop();
        }
    }

  private:
    std::vector<std::shared_ptr<headless::HttpCall>> calls() const {
        const std::lock_guard lock(mutex_);
        return calls_;
    }

    const std::shared_ptr<platform::BackgroundExecutor> background_;
    mutable std::mutex mutex_;
    Answer answer_;                                           // guarded by mutex_
    std::vector<std::shared_ptr<headless::HttpCall>> calls_;  // guarded by mutex_
    std::vector<platform::HttpRequest> requests_;             // guarded by mutex_
};

}  // namespace mireth::test
