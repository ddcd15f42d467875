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

#include "MirethVex/Platform/BackgroundExecutor.hpp"
#include "MirethVex/Platform/HttpClient.hpp"

namespace mireth::test {

/// Answers come on the background executor. Any thread may send.
class FakeHttpClient final : public platform::HttpClient {
  public:
    /// Nothing: the request is held until `complete`.
    using Answer = std::function<std::optional<platform::HttpResult>(const platform::HttpRequest&)>;

    explicit FakeHttpClient(std::shared_ptr<platform::BackgroundExecutor> background)
        : background_(std::move(background)) {}

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

    void setAnswer(Answer answer) {
        const std::lock_guard lock(mutex_);
        answer_ = std::move(answer);
    }
    void answerAll(platform::HttpResult result) {
        setAnswer([result = std::move(result)](const auto&) { return result; });
    }
    void holdAll() { setAnswer({}); }

    AnyCancellable send(platform::HttpRequest request, Completion completion) override {
        auto call = std::make_shared<Call>();
        call->completion = std::move(completion);
        std::optional<platform::HttpResult> result;
        {
            const std::lock_guard lock(mutex_);
            calls_.push_back(call);
            requests_.push_back(request);
            if (answer_) {
                result = answer_(request);
            }
        }
        if (result) {
            background_->post(
                [call, result = std::move(*result)]() mutable { call->finish(std::move(result)); });
        }
        return AnyCancellable([call] { call->cancel(); });
    }

    std::vector<platform::HttpRequest> requests() const {
        const std::lock_guard lock(mutex_);
        return requests_;
    }

    /// Answers the held request number `index`.
    void complete(std::size_t index, platform::HttpResult result) {
        std::shared_ptr<Call> call;
        {
            const std::lock_guard lock(mutex_);
            call = calls_.at(index);
        }
        call->finish(std::move(result));
    }

    bool isCancelled(std::size_t index) const {
        const std::lock_guard lock(mutex_);
        return calls_.at(index)->isCancelled();
    }

    /// Drops every held completion uncalled, as a client does that goes away.
    void dropHeld() {
        std::vector<std::shared_ptr<Call>> calls;
        {
            const std::lock_guard lock(mutex_);
            calls = calls_;
        }
        for (const auto& call : calls) {
            call->drop();
        }
    }

  private:
    struct Call {
        std::mutex mutex;
        Completion completion;   // guarded by mutex
        bool cancelled = false;  // guarded by mutex

        Completion take() {
            const std::lock_guard lock(mutex);
            return std::exchange(completion, nullptr);
        }
        void finish(platform::HttpResult result) {
            if (auto taken = take()) {
                taken(std::move(result));
            }
        }
        void drop() { const Completion dropped = take(); }
        void cancel() {
            {
                const std::lock_guard lock(mutex);
                cancelled = completion != nullptr;
            }
            drop();
        }
        bool isCancelled() {
            const std::lock_guard lock(mutex);
            return cancelled;
        }
    };

    const std::shared_ptr<platform::BackgroundExecutor> background_;
    mutable std::mutex mutex_;
    Answer answer_;                                // guarded by mutex_
    std::vector<std::shared_ptr<Call>> calls_;     // guarded by mutex_
    std::vector<platform::HttpRequest> requests_;  // guarded by mutex_
};

}  // namespace mireth::test
