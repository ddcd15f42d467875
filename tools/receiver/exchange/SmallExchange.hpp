// The exchange of every request whose body is small enough to be held: it is collected and handed over whole.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "exchange/Exchange.hpp"

namespace mireth::receiver {

class SmallExchange final : public Exchange {
  public:
    using Work = std::function<Answer(const std::string& body)>;

    /// `failure` is the body of the answer when the request's body cannot be read.
    SmallExchange(std::uint64_t bodyLimit, std::string failure, Work work)
        : bodyLimit_(bodyLimit), failure_(std::move(failure)), work_(std::move(work)) {}

    std::uint64_t bodyLimit() const override { return bodyLimit_; }
    void accept(std::string_view bytes) override { body_ += bytes; }
    Answer finish() override { return work_(body_); }
    Answer refuse(int status) override { return {.status = status, .body = failure_}; }

  private:
    const std::uint64_t bodyLimit_;
    const std::string failure_;
    const Work work_;
    std::string body_;
};

}  // namespace mireth::receiver
