// Sends requests, judges the answers and decodes their bodies.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <utility>

#include "MirethVex/Platform/HttpClient.hpp"
#include "Platform/Async/Task.hpp"
#include "PrivateSide/Api/ApiResponse.hpp"
#include "PrivateSide/Api/HeaderNames.hpp"
#include "PrivateSide/Api/RequestFactory.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"

namespace mireth {

/// The library's only way onto the network; one for the process, shared by every client. Any thread.
/// An operation runs on the executor that awaits it, which is a background one: bodies are built and decoded
/// there.
class NetworkManager : public std::enable_shared_from_this<NetworkManager> {
  public:
    NetworkManager(MirethLog& log, std::shared_ptr<platform::HttpClient> session,
                   std::shared_ptr<platform::FileManager> files,
                   std::shared_ptr<platform::RandomSource> random);

    template <class R>
    Task<ApiResponseResult<R>> get(const std::string& url, const QueryItems& parameters = {}) {
        auto request = requestFactory_.createRequest(url, HttpMethod::get, nullptr, parameters);
        return makeRequest<R>(shared_from_this(), std::move(request), ErrorPosting::on);
    }

    template <class R>
    Task<ApiResponseResult<R>> post(const std::string& url, const Json* body,
                                    const QueryItems& parameters = {}) {
        auto request = requestFactory_.createRequest(url, HttpMethod::post, body, parameters);
        return makeRequest<R>(shared_from_this(), std::move(request), ErrorPosting::on);
    }

    template <class R>
    Task<ApiResponseResult<R>> postWithUrlEncodedBody(const std::string& url, const TextPairs& body,
                                                      const QueryItems& parameters = {},
                                                      ErrorPosting posting = ErrorPosting::on) {
        auto request = requestFactory_.createRequest(url, HttpMethod::post, body, parameters, posting);
        return makeRequest<R>(shared_from_this(), std::move(request), posting);
    }

    template <class R>
    Task<ApiResponseResult<R>> put(const std::string& url, const Json* body,
                                   const QueryItems& parameters = {}) {
        auto request = requestFactory_.createRequest(url, HttpMethod::put, body, parameters);
        return makeRequest<R>(shared_from_this(), std::move(request), ErrorPosting::on);
    }

    template <class R>
    Task<ApiResponseResult<R>> putWithFormData(const std::string& url, const FormData& data,
                                               const std::string& dataKey) {
        auto request = requestFactory_.createFormDataRequest(url, data, dataKey, HttpMethod::put);
        return makeRequest<R>(shared_from_this(), std::move(request), ErrorPosting::on);
    }

    void setDefaultParameters(QueryItems parameters) {
        requestFactory_.setDefaultParameters(std::move(parameters));
    }

  private:
    using Request = ApiResult<platform::HttpRequest>;

    template <class R>
    static Task<ApiResponseResult<R>> makeRequest(std::shared_ptr<NetworkManager> self, Request request,
                                                  ErrorPosting posting) {
        if (!request) {
            co_return std::unexpected(request.error());
        }
        auto response = co_await performRequest(self, std::move(*request), posting);
        if (!response) {
            co_return std::unexpected(response.error());
        }
        auto data = self->jsonCodec_.template decode<R>(response->body, posting);
        if (!data) {
            co_return std::unexpected(data.error());
        }
        ApiResponse<R> result;
        result.data = std::move(*data);
        result.headers = std::move(response->headers);
        co_return result;
    }

    /// Sends the request and lets only a successful answer through.
    static Task<ApiResult<platform::UrlResponse>> performRequest(std::shared_ptr<NetworkManager> self,
                                                                 platform::HttpRequest request,
                                                                 ErrorPosting posting);
    ApiResult<void> validateResponse(const platform::UrlResponse& response,
                                     const platform::HttpRequest& request, ErrorPosting posting);
    void logHeaders(const platform::UrlResponse& response, ErrorPosting posting);

    static constexpr std::array loggedHeaders{header_names::transactionId, header_names::requestId};

    MirethLog& log_;
    const std::shared_ptr<platform::HttpClient> session_;
    const JSONCodec jsonCodec_;
    RequestFactory requestFactory_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
