// One record per call, shared by the sender's token, the inner client and the loop.
#include "MirethVex/Headless/OrderedHttpClient.hpp"

#include <utility>

#include "MirethVex/Headless/HttpCall.hpp"

namespace mireth::headless {

using platform::HttpResult;

struct OrderedHttpClient::Call : HttpCall {
    Call(Completion completion, InFlight::Operation begun)
        : HttpCall(std::move(completion)), operation(std::move(begun)) {}

    std::mutex mutex;
    InFlight::Operation operation;  // guarded by mutex

    /// `finish` and `land` may be called from several threads; an operation may not.
    void finish(Work continuation) {
        const std::lock_guard lock(mutex);
        operation.finish(std::move(continuation));
    }
    /// In flight no longer.
    void land() noexcept {
        InFlight::Operation ended;
        const std::lock_guard lock(mutex);
        ended = std::move(operation);
    }
};

OrderedHttpClient::OrderedHttpClient(std::shared_ptr<platform::HttpClient> inner,
                                     std::shared_ptr<InFlight> inFlight, Delivery delivery)
    : inFlight_(std::move(inFlight)), delivery_(delivery), inner_(std::move(inner)) {}

OrderedHttpClient::~OrderedHttpClient() {
    inner_.reset();
    for (const auto& weak : calls_) {
        if (const auto call = weak.lock()) {
            call->end();
            call->land();
        }
    }
}

AnyCancellable OrderedHttpClient::send(platform::HttpRequest request, Completion completion) {
    const auto call = std::make_shared<Call>(std::move(completion), inFlight_->begin());
    {
        const std::lock_guard lock(mutex_);
        std::erase_if(calls_, [](const auto& weak) { return weak.expired(); });
        calls_.push_back(call);
    }
    auto receive = [call, delivery = delivery_](HttpResult result) {
        if (delivery == Delivery::inOrderOnLoop) {
            call->finish([call, result = std::move(result)]() mutable { call->deliver(std::move(result)); });
        } else {
            call->deliver(std::move(result));
            call->land();
        }
    };
    auto token = inner_->send(std::move(request), std::move(receive));
    return AnyCancellable([call, token = std::move(token)]() mutable {
        call->drop();
        call->land();
        token.cancel();
    });
}

}  // namespace mireth::headless
