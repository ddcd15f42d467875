// Requests answered by a function.
#include "MirethVex/Headless/ServiceHttpClient.hpp"

#include <atomic>
#include <utility>

namespace mireth::headless {

using platform::HttpRequest;
using platform::HttpResult;

struct ServiceHttpClient::State {
    std::mutex serving;   // held while the service or a completion runs
    Service service;      // guarded by serving
    bool closed = false;  // guarded by serving

    std::mutex mutex;
    std::vector<HttpRequest> requests;  // guarded by mutex

    HttpResult answer(const HttpRequest& request) const {
        if (!service) {
            return std::unexpected(platform::TransportError{"There is no network."});
        }
        return service(request);
    }
};

ServiceHttpClient::ServiceHttpClient(std::shared_ptr<platform::BackgroundExecutor> background,
                                     Service service)
    : background_(std::move(background)), state_(std::make_shared<State>()) {
    state_->service = std::move(service);
}

ServiceHttpClient::~ServiceHttpClient() {
    const std::lock_guard lock(state_->serving);
    state_->closed = true;
}

AnyCancellable ServiceHttpClient::send(HttpRequest request, Completion completion) {
    {
        const std::lock_guard lock(state_->mutex);
        state_->requests.push_back(request);
    }
    auto cancelled = std::make_shared<std::atomic<bool>>(false);
    background_->post([state = state_, cancelled, request = std::move(request),
                       completion = std::move(completion)]() mutable {
        const std::lock_guard lock(state->serving);
        if (*cancelled || state->closed) {
            return;
        }
        HttpResult result = state->answer(request);
        if (!*cancelled) {
            completion(std::move(result));
        }
    });
    return AnyCancellable([cancelled] { *cancelled = true; });
}

void ServiceHttpClient::setService(Service service) {
    const std::lock_guard lock(state_->serving);
    state_->service = std::move(service);
}

std::vector<HttpRequest> ServiceHttpClient::requests() const {
    const std::lock_guard lock(state_->mutex);
    return state_->requests;
}

}  // namespace mireth::headless
