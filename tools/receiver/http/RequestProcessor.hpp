// Answers the request of a connection: httplib parses and frames, within our bounds, and our handler decides.
// Used by Listener. Included by .cpp files only, as it names httplib's types.
#pragma once

#include <httplib.h>

#include <exception>

#include "base/Environment.hpp"
#include "exchange/Exchange.hpp"
#include "http/ConnectionTimer.hpp"
#include "http/ListenOptions.hpp"
#include "http/Transport.hpp"
#include "settings/Limits.hpp"

namespace mireth::receiver {

/// httplib's server, run on connections that others accept. It owns the listening socket, without which
/// httplib breaks its answers off. Any thread may call `answer`.
class RequestProcessor final : private httplib::Server {
  public:
    /// All of them outlive the processor.
    RequestProcessor(const Limits& limits, RequestHandler& handler, const Environment& environment);

    /// False when the address cannot be had; errno may tell why. Once only.
    bool bind(const ListenOptions& options);
    int port() const { return port_; }
    int listeningSocket() const { return svr_sock_; }
    /// Once nothing is answered any more.
    void closeSocket();

    /// Reads one request, answers it and ends the writing. What handlers throw is reported and answered 500.
    void answer(Transport& transport, ConnectionTimer& timer);
    /// Tells the operator of what was thrown for a request.
    void report(const std::exception_ptr& error) const;

  private:
    void routeAll();
    void answerFailures();

    const Limits& limits_;
    RequestHandler& handler_;
    const Environment& environment_;
    int port_ = 0;
};

}  // namespace mireth::receiver
