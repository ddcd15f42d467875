#include "PrivateSide/Api/ApiError.hpp"

namespace mireth {

std::string_view description(ApiError error) noexcept {
    switch (error) {
        case ApiError::brandDcIsNotPresent:
            return "Brand DC is not present.";
        case ApiError::invalidURL:
            return "Invalid url.";
        case ApiError::requestFailed:
            return "Request failed.";
        case ApiError::invalidResponse:
            return "Invalid response.";
        case ApiError::encodingError:
            return "Encoding error.";
        case ApiError::decodingError:
            return "Decoding error.";
        case ApiError::networkError:
            return "Network error.";
        case ApiError::internalInconsistency:
            return "Internal inconsistency";
    }
    return "";
}

std::string text(ApiError error) {
    return std::string(description(error));
}

}  // namespace mireth
