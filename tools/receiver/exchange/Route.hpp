// Where a request leads: the exchange that answers it and the endpoint's name for the operator's monitoring.
#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include "exchange/Exchange.hpp"
#include "exchange/FixedExchange.hpp"

namespace mireth::receiver {

struct Route {
    std::string_view endpoint;  ///< one of a few fixed names
    std::unique_ptr<Exchange> exchange;
};

/// A route whose answer is settled already.
inline Route fixedRoute(std::string_view endpoint, Answer answer) {
    return {.endpoint = endpoint, .exchange = std::make_unique<FixedExchange>(std::move(answer))};
}

}  // namespace mireth::receiver
