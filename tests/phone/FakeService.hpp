// The recording service of a test: an HTTP server of its own on a loopback port.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace mireth::phone {

struct ReceivedRequest {
    std::string method;
    std::string path;
    std::string body;
};

/// Listens from construction to destruction. Any thread.
class FakeService {
  public:
    FakeService();
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;
    ~FakeService();

    /// Such as "http://127.0.0.1:40123".
    std::string origin() const;
    std::vector<ReceivedRequest> requests() const;
    /// How many requests' paths contain `text`.
    std::size_t countOf(const std::string& text) const;

  private:
    struct Server;
    const std::unique_ptr<Server> server_;
};

}  // namespace mireth::phone
