#include "Platform/Async/SendRequest.hpp"

#include <mutex>
#include <utility>

#include "Platform/Async/AsyncEvent.hpp"

namespace mireth {

namespace {

/// What the sender and the completion share; either may be first to touch it, on its own thread.
struct Exchange {
    std::mutex mutex;
    platform::HttpResult result =
        std::unexpected(platform::TransportError{"No answer."});  // guarded by mutex
    AsyncEvent done;
};

/// The completion. A client that goes away drops it uncalled; the sender then resumes all the same, without
/// an answer.
class Answer {
  public:
    explicit Answer(std::shared_ptr<Exchange> exchange) : exchange_(std::move(exchange)) {}
    Answer(Answer&&) noexcept = default;
    Answer& operator=(Answer&&) = delete;
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;
    ~Answer() {
        if (exchange_) {
            exchange_->done.set();
        }
    }

    void operator()(platform::HttpResult result) {
        {
            const std::lock_guard lock(exchange_->mutex);
            exchange_->result = std::move(result);
        }
        exchange_->done.set();
    }

  private:
    std::shared_ptr<Exchange> exchange_;
};

}  // namespace

Task<platform::HttpResult> sendRequest(std::shared_ptr<platform::HttpClient> client,
                                       platform::HttpRequest request) {
    const auto exchange = std::make_shared<Exchange>();
    // Lives in this coroutine's frame: a dropped frame ends the request.
    const AnyCancellable call = client->send(std::move(request), Answer(exchange));
    co_await exchange->done.wait();
    const std::lock_guard lock(exchange->mutex);
    co_return std::move(exchange->result);
}

}  // namespace mireth
