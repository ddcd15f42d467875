// A scripted HTTP service on a loopback port, for the contract tests of clients that use real sockets.
#pragma once

#include <memory>
#include <string>

#include "HttpClientContract.hpp"

namespace mireth::test {

class HttpService {
  public:
    HttpService();
    ~HttpService();
    HttpService(const HttpService&) = delete;
    HttpService& operator=(const HttpService&) = delete;

    std::string origin() const;
    void setService(HttpClientHarness::Service service);

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace mireth::test
