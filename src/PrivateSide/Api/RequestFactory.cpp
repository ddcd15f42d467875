#include "PrivateSide/Api/RequestFactory.hpp"

#include <boost/url/parse.hpp>
#include <boost/url/url.hpp>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>

#include "PrivateSide/Api/HeaderNames.hpp"
#include "PrivateSide/Api/UrlParser.hpp"

namespace mireth {

namespace {

constexpr std::uint64_t largestPlaybackFile = 64ULL * 1024 * 1024;

/// `url` with exactly `items` as its query; nothing when it is not a URL with a scheme and a host.
std::optional<std::string> withQuery(const std::string& url, const QueryItems& items) {
    const auto parsed = boost::urls::parse_uri(url);
    if (!parsed || parsed->encoded_host().empty() || !UrlParser::mayFollowHost(parsed->encoded_path())) {
        return std::nullopt;
    }
    boost::urls::url result(*parsed);
    result.remove_query();
    for (const auto& [name, value] : items) {
        result.params().append({name, value});
    }
    return std::string(result.buffer());
}

/// A file name between double quotes (RFC 7578 section 4.2): what would end the quotes or the line is
/// encoded.
std::string quotedFileName(const std::string& name) {
    std::string result;
    for (const char c : name) {
        switch (c) {
            case '"':
                result += "%22";
                break;
            case '\r':
                result += "%0D";
                break;
            case '\n':
                result += "%0A";
                break;
            default:
                result += c;
        }
    }
    return result;
}

}  // namespace

std::string_view rawValue(HttpMethod method) noexcept {
    switch (method) {
        case HttpMethod::get:
            return "GET";
        case HttpMethod::post:
            return "POST";
        case HttpMethod::put:
            return "PUT";
        case HttpMethod::del:
            return "DELETE";
    }
    return "";
}

std::optional<HttpMethod> httpMethodFromRawValue(std::string_view text) noexcept {
    for (const HttpMethod method : {HttpMethod::get, HttpMethod::post, HttpMethod::put, HttpMethod::del}) {
        if (text == rawValue(method)) {
            return method;
        }
    }
    return std::nullopt;
}

RequestFactory::RequestFactory(MirethLog& log, std::shared_ptr<platform::FileManager> files,
                               std::shared_ptr<platform::RandomSource> random)
    : log_(log), jsonCodec_(log), files_(std::move(files)), random_(std::move(random)) {}

ApiResult<platform::HttpRequest> RequestFactory::createRequest(const std::string& url, HttpMethod httpMethod,
                                                               const Json* body, const QueryItems& parameters,
                                                               ErrorPosting posting) const {
    auto request = createBaseRequest(url, httpMethod, parameters, posting);
    if (!request || body == nullptr) {
        return request;
    }
    auto text = jsonCodec_.encode(*body, posting);
    if (!text) {
        return std::unexpected(text.error());
    }
    request->body = std::move(*text);
    request->headers.emplace_back("Content-Type", "application/json; charset=UTF-8");
    return request;
}

ApiResult<platform::HttpRequest> RequestFactory::createRequest(const std::string& url, HttpMethod httpMethod,
                                                               const TextPairs& encodedBodyParameters,
                                                               const QueryItems& parameters,
                                                               ErrorPosting posting) const {
    auto request = createBaseRequest(url, httpMethod, parameters, posting);
    if (request) {
        request->body = JSONCodec::urlEncodeBodyParameters(encodedBodyParameters);
        request->headers.emplace_back("Content-Type", "application/x-www-form-urlencoded");
    }
    return request;
}

ApiResult<platform::HttpRequest> RequestFactory::createFormDataRequest(const std::string& url,
                                                                       const FormData& data,
                                                                       const std::string& dataKey,
                                                                       HttpMethod httpMethod) const {
    auto request = createBaseRequest(url, httpMethod, {}, ErrorPosting::on);
    if (!request) {
        return request;
    }
    const std::string boundary = random_->uuid();
    auto body = buildFormDataBody(data, dataKey, boundary);
    if (!body) {
        return std::unexpected(body.error());
    }
    request->body = std::move(*body);
    request->headers.emplace_back("Content-Type", "multipart/form-data; boundary=" + boundary);
    return request;
}

void RequestFactory::setDefaultParameters(QueryItems parameters) {
    const std::lock_guard lock(mutex_);
    defaultParameters_ = std::move(parameters);
}

ApiResult<std::string> RequestFactory::buildFormDataBody(const FormData& data, const std::string& dataKey,
                                                         const std::string& boundary) const {
    std::string body;
    for (const auto& [key, value] : data) {
        body += "--" + boundary + "\r\n";
        body.append("Content-Disposition: form-data; name=\"").append(dataKey);
        body.append("[").append(key).append("]\"");
        if (const auto* media = std::get_if<MediaData>(&value)) {
            const std::string fileName = media->fileURL.filename().string();
            body += "; filename=\"" + quotedFileName(fileName) + "\"\r\n";
            body += "Content-Type: " + media->contentType + "\r\n\r\n";
            const auto contents = files_->readFile(media->fileURL, largestPlaybackFile);
            if (!contents) {
                log_.error(LogTag::network, "Encoding error.", {{"file", fileName}});
                return std::unexpected(ApiError::encodingError);
            }
            body += *contents;
        } else {
            body += "\r\n\r\n";
            const auto text = jsonCodec_.encode(*std::get<std::shared_ptr<const Json>>(value));
            if (!text) {
                return std::unexpected(text.error());
            }
            body += *text;
        }
        body += "\r\n";
    }
    body += "--" + boundary + "--\r\n";
    return body;
}

ApiResult<platform::HttpRequest> RequestFactory::createBaseRequest(const std::string& url,
                                                                   HttpMethod httpMethod,
                                                                   const QueryItems& parameters,
                                                                   ErrorPosting posting) const {
    QueryItems items = parameters;
    {
        const std::lock_guard lock(mutex_);
        items.insert(items.end(), defaultParameters_.begin(), defaultParameters_.end());
    }
    auto address = withQuery(url, items);
    if (!address) {
        log_.error(LogTag::network, "Invalid URL.", {{"url", url}}, posting == ErrorPosting::on);
        return std::unexpected(ApiError::invalidURL);
    }
    platform::HttpRequest request;
    request.url = std::move(*address);
    request.method = rawValue(httpMethod);
    request.headers.emplace_back(header_names::transactionId, random_->uuid());
    request.headers.emplace_back(header_names::clientId, header_names::clientIdValue);
    return request;
}

}  // namespace mireth
