// Accepts connections and gives each a thread, with our own bounds and TLS around them. Used by HttpServer.
#pragma once

#include <sys/socket.h>

#include <memory>

#include "base/Environment.hpp"
#include "base/UniqueFd.hpp"
#include "exchange/Exchange.hpp"
#include "http/Acceptor.hpp"
#include "http/ConnectionThreads.hpp"
#include "http/ListenOptions.hpp"
#include "http/PerAddressLimiter.hpp"
#include "http/SlowClientShedder.hpp"
#include "http/StopSignal.hpp"
#include "http/Transport.hpp"
#include "settings/Limits.hpp"

namespace mireth::receiver {

class RequestProcessor;

/// One thread at a time, but for what the connections' own threads run.
class Listener {
  public:
    /// All but `tls` outlive the listener; `tls` is null for plain connections.
    Listener(const Limits& limits, RequestHandler& handler, const Environment& environment,
             std::shared_ptr<TlsContext> tls);
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener();

    /// False when the address cannot be had; errno may tell why.
    bool bind(const ListenOptions& options);
    /// Accepts from here on. After `bind` only.
    void begin();
    /// Accepts nothing more, and returns when what is under way has ended or its time is over.
    void end();
    int port() const;

  private:
    void take(UniqueFd connection, const sockaddr_storage& peer);
    void serveSafely(int socket);
    void serve(int socket);
    void turnAway(int socket) const;

    const Limits& limits_;
    RequestHandler& handler_;
    const Environment& environment_;
    const std::shared_ptr<TlsContext> tls_;
    const std::unique_ptr<RequestProcessor> requests_;
    StopSignal stop_;
    SlowClientShedder shedder_;
    PerAddressLimiter perAddress_{limits_.connectionsPerAddress};
    ConnectionThreads threads_{limits_.connections, shedder_};
    std::unique_ptr<Acceptor> accepting_;
};

}  // namespace mireth::receiver
