// The exchange whose answer is settled before its body: requests to unknown addresses and by wrong methods.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "exchange/Exchange.hpp"

namespace mireth::receiver {

class FixedExchange final : public Exchange {
  public:
    explicit FixedExchange(Answer answer) : answer_(std::move(answer)) {}

    /// Nobody waits for the body of a request that is refused anyway.
    std::uint64_t bodyLimit() const override { return 0; }
    void accept(std::string_view) override {}
    Answer finish() override { return answer_; }
    Answer refuse(int) override { return answer_; }

  private:
    const Answer answer_;
};

}  // namespace mireth::receiver
