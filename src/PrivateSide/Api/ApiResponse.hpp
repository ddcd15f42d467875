// A successful answer of the service.
#pragma once

#include <map>
#include <string>

#include "MirethVex/Platform/HttpClient.hpp"
#include "PrivateSide/Api/ApiError.hpp"

namespace mireth {

/// The decoded body and the response's header fields. The HTTP status was judged before.
template <class T>
struct ApiResponse {
    T data{};
    platform::HeaderFields headers;
};

template <class T>
using ApiResponseResult = ApiResult<ApiResponse<T>>;

}  // namespace mireth
