// Builds requests: JSON, form or multipart bodies, query items and tracking headers.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "MirethVex/Platform/FileManager.hpp"
#include "MirethVex/Platform/HttpClient.hpp"
#include "MirethVex/Platform/RandomSource.hpp"
#include "PrivateSide/Api/HttpMethod.hpp"
#include "PrivateSide/Api/JSONCodec.hpp"
#include "PrivateSide/Api/MediaData.hpp"

namespace mireth {

/// Names and values of a query, in writing order; a name may occur more than once.
using QueryItems = TextPairs;

/// Any thread; building a multipart body reads a file, so that one is called in the background.
class RequestFactory {
  public:
    RequestFactory(MirethLog& log, std::shared_ptr<platform::FileManager> files,
                   std::shared_ptr<platform::RandomSource> random);

    /// A request with a JSON body, or with none when `body` is null.
    ApiResult<platform::HttpRequest> createRequest(const std::string& url, HttpMethod httpMethod,
                                                   const Json* body, const QueryItems& parameters,
                                                   ErrorPosting posting = ErrorPosting::on) const;

    /// A request with an URL-encoded form body.
    ApiResult<platform::HttpRequest> createRequest(const std::string& url, HttpMethod httpMethod,
                                                   const TextPairs& encodedBodyParameters,
                                                   const QueryItems& parameters,
                                                   ErrorPosting posting = ErrorPosting::on) const;

    /// A request with a multipart body (RFC 7578) whose parts are named `dataKey[key]`.
    ApiResult<platform::HttpRequest> createFormDataRequest(const std::string& url, const FormData& data,
                                                           const std::string& dataKey,
                                                           HttpMethod httpMethod) const;

    /// Replaces the query items that every request carries after its own.
    void setDefaultParameters(QueryItems parameters);

    /// The multipart body by itself. A file that cannot be read fails the whole with `encodingError`.
    ApiResult<std::string> buildFormDataBody(const FormData& data, const std::string& dataKey,
                                             const std::string& boundary) const;

  private:
    ApiResult<platform::HttpRequest> createBaseRequest(const std::string& url, HttpMethod httpMethod,
                                                       const QueryItems& parameters,
                                                       ErrorPosting posting) const;

    MirethLog& log_;
    const JSONCodec jsonCodec_;
    const std::shared_ptr<platform::FileManager> files_;
    const std::shared_ptr<platform::RandomSource> random_;

    mutable std::mutex mutex_;
    QueryItems defaultParameters_;  // guarded by mutex_, replaced wholesale
};

}  // namespace mireth
