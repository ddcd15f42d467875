// The rules of every HttpClient, with a service that the test scripts.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "MirethVex/Platform/HttpClient.hpp"
#include "TestSupport.hpp"
#include "support/SendAndWait.hpp"

namespace mireth::test {

class HttpClientHarness {
  public:
    /// What the service saw of a request.
    struct Seen {
        std::string method;
        std::string path;
        platform::HeaderFields headers;
        std::string body;
    };
    /// Answers a request; runs on a thread of the service's.
    using Service = std::function<platform::UrlResponse(const Seen&)>;

    virtual ~HttpClientHarness() = default;
    virtual platform::HttpClient& client() = 0;
    virtual void destroyClient() = 0;
    /// Where the service is, without a slash at the end.
    virtual std::string origin() = 0;
    /// Set before the first request.
    virtual void setService(Service service) = 0;
};

class HttpClientContract : public ContractTest<HttpClientHarness> {};
/// What guards against the servers of others. Clients that reach no network have nothing to answer here.
class HttpClientNetwork : public ContractTest<HttpClientHarness> {};

inline platform::UrlResponse answer(int status, std::string body = {}) {
    platform::UrlResponse response;
    response.status = status;
    response.body = std::move(body);
    return response;
}

/// What a service sees of a request that no network carries.
inline HttpClientHarness::Seen seenOf(const platform::HttpRequest& request, const std::string& origin) {
    HttpClientHarness::Seen seen{
        request.method, request.url.substr(origin.size()), {}, request.body.value_or("")};
    for (const auto& [name, value] : request.headers) {
        seen.headers.insert_or_assign(name, value);
    }
    return seen;
}

}  // namespace mireth::test
