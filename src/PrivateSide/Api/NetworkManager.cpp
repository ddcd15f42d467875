#include "PrivateSide/Api/NetworkManager.hpp"

#include "Platform/Async/SendRequest.hpp"

namespace mireth {

namespace {

/// What the log shows for a header or status that is not there.
constexpr std::string_view absent = "nil";

std::string transactionIdOf(const platform::HttpRequest& request) {
    for (const auto& [name, value] : request.headers) {
        if (name == header_names::transactionId) {
            return value;
        }
    }
    return std::string(absent);
}

std::string fieldOr(const platform::HeaderFields& headers, std::string_view name,
                    std::string_view otherwise) {
    const auto found = headers.find(name);
    return found == headers.end() ? std::string(otherwise) : found->second;
}

}  // namespace

NetworkManager::NetworkManager(MirethLog& log, std::shared_ptr<platform::HttpClient> session,
                               std::shared_ptr<platform::FileManager> files,
                               std::shared_ptr<platform::RandomSource> random)
    : log_(log),
      session_(std::move(session)),
      jsonCodec_(log),
      requestFactory_(log, std::move(files), std::move(random)),
      memoryUse_(log, "PrivateSide/Api/NetworkManager") {}

Task<ApiResult<platform::UrlResponse>> NetworkManager::performRequest(std::shared_ptr<NetworkManager> self,
                                                                      platform::HttpRequest request,
                                                                      ErrorPosting posting) {
    auto response = co_await sendRequest(self->session_, request);
    if (!response) {
        self->log_.error(LogTag::network, "Network request failed",
                         {{"error", response.error().description},
                          {"requestDetails", request.method + " " + request.url},
                          {"transactionId", transactionIdOf(request)}},
                         posting == ErrorPosting::on);
        co_return std::unexpected(ApiError::networkError);
    }
    if (const auto valid = self->validateResponse(*response, request, posting); !valid) {
        co_return std::unexpected(valid.error());
    }
    co_return std::move(*response);
}

ApiResult<void> NetworkManager::validateResponse(const platform::UrlResponse& response,
                                                 const platform::HttpRequest& request, ErrorPosting posting) {
    if (!response.isHttp) {
        log_.error(LogTag::network, "Invalid response type received.",
                   {{"url", request.url},
                    {"responseType", response.typeName},
                    {"transactionId", transactionIdOf(request)}},
                   posting == ErrorPosting::on);
        return std::unexpected(ApiError::invalidResponse);
    }
    // No lower bound: the service's 1xx answers count as success.
    if (response.status < 300) {
        logHeaders(response, posting);
        return {};
    }
    log_.error(LogTag::network, "Request failed.",
               {{"url", request.url},
                {"statusCode", std::to_string(response.status)},
                {"transactionId", fieldOr(response.headers, header_names::transactionId, absent)}},
               posting == ErrorPosting::on);
    return std::unexpected(ApiError::requestFailed);
}

void NetworkManager::logHeaders(const platform::UrlResponse& response, ErrorPosting posting) {
    for (const std::string_view name : loggedHeaders) {
        const auto found = response.headers.find(name);
        if (found != response.headers.end()) {
            log_.info(LogTag::network, std::string(name) + " response header",
                      {{"headerValue", found->second}});
        } else {
            log_.error(LogTag::network, std::string(name) + " response header not found", {},
                       posting == ErrorPosting::on);
        }
    }
}

}  // namespace mireth
