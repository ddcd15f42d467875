// The one error type of every network operation.
#pragma once

#include <expected>
#include <string>
#include <string_view>

namespace mireth {

enum class ApiError {
    brandDcIsNotPresent,
    invalidURL,
    requestFailed,
    invalidResponse,
    encodingError,
    decodingError,
    networkError,
    internalInconsistency
};

/// The error in words.
std::string_view description(ApiError error) noexcept;
std::string text(ApiError error);

template <class T>
using ApiResult = std::expected<T, ApiError>;

}  // namespace mireth
