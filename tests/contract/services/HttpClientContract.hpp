// The rules of every HttpClient, with a service that the test scripts.
#pragma once

#include "MirethVex/Platform/HttpClient.hpp"
#include "TestSupport.hpp"

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

using HttpClientContract = ContractTest<HttpClientHarness>;

}  // namespace mireth::test
