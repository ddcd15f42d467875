// The HTTP server: accepts connections, plain or TLS, keeps each within its bounds and hands its request to a
// handler. Used by the serve command and by tests.
#pragma once

#include <expected>
#include <memory>
#include <string>

#include "base/Environment.hpp"
#include "exchange/Exchange.hpp"
#include "http/ListenOptions.hpp"
#include "settings/Limits.hpp"

namespace mireth::receiver {

class Listener;

/// Each connection carries one request: clients upload every ten seconds or so, and one that reused a
/// connection just as the server dropped it for idleness would lose its chunk. Every response carries
/// "x-transaction-id", the request's own when it is plain, and a fresh "x-request-id".
class HttpServer {
  public:
    /// Listens and begins to accept. `limits`, `handler` and `environment` must outlive the server. The error
    /// names the address or the file.
    static std::expected<std::unique_ptr<HttpServer>, std::string> start(const ListenOptions& options,
                                                                         const Limits& limits,
                                                                         RequestHandler& handler,
                                                                         const Environment& environment);
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;
    /// Stops.
    ~HttpServer();

    int port() const;
    /// Accepts nothing more, lets requests under way finish (for 10 seconds at most) and returns when they
    /// have. Once only.
    void stop();

  private:
    explicit HttpServer(std::unique_ptr<Listener> listener);

    const std::unique_ptr<Listener> listener_;
};

}  // namespace mireth::receiver
