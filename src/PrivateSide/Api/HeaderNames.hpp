// The tracking headers.
#pragma once

#include <string_view>

namespace mireth::header_names {

/// A fresh UUID on every request; logged from responses.
inline constexpr std::string_view transactionId = "x-transaction-id";
/// Never sent; logged from responses.
inline constexpr std::string_view requestId = "x-request-id";
/// A constant on every request.
inline constexpr std::string_view clientId = "x-client-id";
inline constexpr std::string_view clientIdValue = "vex-mobile";

}  // namespace mireth::header_names
