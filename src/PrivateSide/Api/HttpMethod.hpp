// The request methods in use.
#pragma once

#include <optional>
#include <string_view>

namespace mireth {

enum class HttpMethod { get, post, put, del };

/// "GET", "POST", "PUT" or "DELETE".
std::string_view rawValue(HttpMethod method) noexcept;

/// Accepts exactly the four upper-case spellings.
std::optional<HttpMethod> httpMethodFromRawValue(std::string_view text) noexcept;

}  // namespace mireth
