// Watches another exchange and counts it once it is answered. The router puts one around every exchange.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>

#include "exchange/Exchange.hpp"
#include "service/Metrics.hpp"

namespace mireth::receiver {

class MeasuredExchange final : public Exchange {
  public:
    using Now = std::function<std::chrono::steady_clock::time_point()>;

    /// `metrics` and `now` outlive the exchange; `endpoint` is a fixed name.
    MeasuredExchange(std::unique_ptr<Exchange> inner, std::string_view endpoint, Metrics& metrics,
                     const Now& now)
        : inner_(std::move(inner)), endpoint_(endpoint), metrics_(metrics), now_(now), began_(now()) {}

    std::uint64_t bodyLimit() const override { return inner_->bodyLimit(); }
    void accept(std::string_view bytes) override {
        received_ += bytes.size();
        watched([&] { inner_->accept(bytes); });
    }
    Answer finish() override {
        return counted(watched([&] { return inner_->finish(); }));
    }
    Answer refuse(int status) override {
        return counted(watched([&] { return inner_->refuse(status); }));
    }

  private:
    // What throws is answered 500 by the server, and is counted as that.
    template <typename Work>
    auto watched(Work work) -> decltype(work()) {
        try {
            return work();
        } catch (...) {
            count(500, 0);
            throw;
        }
    }

    Answer counted(Answer answer) {
        count(answer.status, answer.piece ? answer.piece->size : answer.body.size());
        return answer;
    }

    void count(int status, std::uint64_t sent) {
        metrics_.count({.endpoint = endpoint_,
                        .status = status,
                        .received = received_,
                        .sent = sent,
                        .took = std::max(now_() - began_, std::chrono::steady_clock::duration::zero())});
    }

    const std::unique_ptr<Exchange> inner_;
    const std::string_view endpoint_;
    Metrics& metrics_;
    const Now& now_;
    const std::chrono::steady_clock::time_point began_;
    std::uint64_t received_ = 0;
};

}  // namespace mireth::receiver
