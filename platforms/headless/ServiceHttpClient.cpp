// Requests answered by a function, one after the other.
#include "MirethVex/Headless/ServiceHttpClient.hpp"

#include <deque>
#include <utility>

#include "MirethVex/Headless/HttpCall.hpp"

namespace mireth::headless {

using platform::HttpRequest;
using platform::HttpResult;

struct ServiceHttpClient::State : std::enable_shared_from_this<State> {
    struct Waiting {
        HttpRequest request;
        std::shared_ptr<HttpCall> call;
    };
    class Turn;

    State(std::weak_ptr<platform::BackgroundExecutor> executor, Service answering)
        : background(std::move(executor)), service(std::move(answering)) {}

    /// Answers one request, unless another is being answered: then that one's end sees to it.
    void serve();

    const std::weak_ptr<platform::BackgroundExecutor> background;  // whose work owns the state

    std::mutex mutex;
    Service service;                             // guarded by mutex
    std::vector<HttpRequest> requests;           // guarded by mutex
    std::vector<std::weak_ptr<HttpCall>> calls;  // guarded by mutex
    std::deque<Waiting> waiting;                 // guarded by mutex
    bool isServing = false;                      // guarded by mutex
};

/// Ends the turn of a request, whatever its service or completion threw, and gives the next one its own.
class ServiceHttpClient::State::Turn {
  public:
    explicit Turn(State& state) : state_(state) {}
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() {
        bool isMore = false;
        {
            const std::lock_guard lock(state_.mutex);
            state_.isServing = false;
            isMore = !state_.waiting.empty();
        }
        if (const auto background = state_.background.lock(); background && isMore) {
            background->post([state = state_.shared_from_this()] { state->serve(); });
        }
    }

  private:
    State& state_;
};

void ServiceHttpClient::State::serve() {
    Waiting next;
    Service answer;
    {
        const std::lock_guard lock(mutex);
        if (isServing || waiting.empty()) {
            return;
        }
        isServing = true;
        next = std::move(waiting.front());
        waiting.pop_front();
        answer = service;
    }
    const Turn turn(*this);
    if (!next.call->isPending()) {
        return;
    }
    HttpResult result = std::unexpected(platform::TransportError{"There is no network."});
    if (answer) {
        result = answer(next.request);
    }
    next.call->deliver(std::move(result));
}

ServiceHttpClient::ServiceHttpClient(std::shared_ptr<platform::BackgroundExecutor> background,
                                     Service service)
    : background_(std::move(background)), state_(std::make_shared<State>(background_, std::move(service))) {}

ServiceHttpClient::~ServiceHttpClient() {
    std::vector<std::weak_ptr<HttpCall>> calls;
    {
        const std::lock_guard lock(state_->mutex);
        calls.swap(state_->calls);
    }
    for (const auto& weak : calls) {
        if (const auto call = weak.lock()) {
            call->end();
        }
    }
}

AnyCancellable ServiceHttpClient::send(HttpRequest request, Completion completion) {
    auto call = std::make_shared<HttpCall>(std::move(completion));
    {
        const std::lock_guard lock(state_->mutex);
        state_->requests.push_back(request);
        std::erase_if(state_->calls, [](const auto& weak) { return weak.expired(); });
        state_->calls.push_back(call);
    }
    background_->post([state = state_, call, request = std::move(request)]() mutable {
        {
            const std::lock_guard lock(state->mutex);
            state->waiting.push_back({std::move(request), std::move(call)});
        }
        state->serve();
    });
    return AnyCancellable([call] { call->drop(); });
}

void ServiceHttpClient::setService(Service service) {
    const std::lock_guard lock(state_->mutex);
    std::swap(state_->service, service);
}

std::vector<HttpRequest> ServiceHttpClient::requests() const {
    const std::lock_guard lock(state_->mutex);
    return state_->requests;
}

}  // namespace mireth::headless
