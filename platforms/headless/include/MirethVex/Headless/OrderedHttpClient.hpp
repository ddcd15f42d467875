// Counts another client's requests, and in virtual time puts their answers into the order of the requests.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "MirethVex/Headless/InFlight.hpp"
#include "MirethVex/Platform/HttpClient.hpp"

namespace mireth::headless {

/// Any thread may send. A request is in flight until its completion has run or its token is dropped.
class OrderedHttpClient final : public platform::HttpClient {
  public:
    enum class Delivery {
        /// On the loop, in the background, after the completions of all earlier requests: the network's
        /// timing then shows nowhere.
        inOrderOnLoop,
        /// As they come, on the inner client's thread.
        asTheyCome,
    };

    OrderedHttpClient(std::shared_ptr<platform::HttpClient> inner, std::shared_ptr<InFlight> inFlight,
                      Delivery delivery);
    OrderedHttpClient(const OrderedHttpClient&) = delete;
    OrderedHttpClient& operator=(const OrderedHttpClient&) = delete;
    ~OrderedHttpClient() override;

    AnyCancellable send(platform::HttpRequest request, Completion completion) override;

  private:
    struct Call;

    const std::shared_ptr<InFlight> inFlight_;
    const Delivery delivery_;

    std::mutex mutex_;
    std::vector<std::weak_ptr<Call>> calls_;  // guarded by mutex_

    std::shared_ptr<platform::HttpClient> inner_;  // goes first: it waits for running completions
};

}  // namespace mireth::headless
