// From an accepted socket to its thread, its transport and its end.
#include "http/Listener.hpp"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <chrono>
#include <exception>
#include <utility>

#include "http/AnswerHeaders.hpp"
#include "http/ConnectionTimer.hpp"
#include "http/RequestProcessor.hpp"

namespace mireth::receiver {
namespace {

constexpr std::chrono::seconds grace{10};

}  // namespace

Listener::Listener(const Limits& limits, RequestHandler& handler, const Environment& environment,
                   std::shared_ptr<TlsContext> tls)
    : limits_(limits),
      handler_(handler),
      environment_(environment),
      tls_(std::move(tls)),
      requests_(std::make_unique<RequestProcessor>(limits, handler, environment)) {}

Listener::~Listener() = default;

bool Listener::bind(const ListenOptions& options) {
    return requests_->bind(options);
}

int Listener::port() const {
    return requests_->port();
}

// Not by httplib, which closes the socket for good when a connection cannot be accepted.
void Listener::begin() {
    accepting_ = std::make_unique<Acceptor>(
        requests_->listeningSocket(),
        [this](UniqueFd connection, const sockaddr_storage& peer) { take(std::move(connection), peer); },
        environment_.report);
}

void Listener::end() {
    if (accepting_) {
        stop_.raise(grace);
        accepting_.reset();
        threads_.shutdown();
    }
    requests_->closeSocket();
}

void Listener::take(UniqueFd connection, const sockaddr_storage& peer) {
    const auto shared = std::make_shared<UniqueFd>(std::move(connection));
    const auto slot = perAddress_.acquire(peer);
    if (!slot || !threads_.enqueue([this, shared, slot] { serveSafely(shared->get()); })) {
        turnAway(shared->get());
    }
}

void Listener::serveSafely(int socket) {
    try {
        serve(socket);
    } catch (...) {
        requests_->report(std::current_exception());
    }
}

void Listener::serve(int socket) {
    const int yes = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    ConnectionTimer timer(limits_, stop_, shedder_);
    const auto transport = tls_ ? tls_->accept(socket, timer) : plainTransport(socket, timer);
    if (transport) {
        requests_->answer(*transport, timer);
    }
    if (timer.wasShed()) {
        handler_.slowClientShed();
    } else {
        shedder_.dequeued();
    }
}

// Runs where connections are accepted, so it must not wait.
void Listener::turnAway(int socket) const {
    handler_.turnedAway();
    if (!tls_) {
        const auto response = bareResponse("503 Service Unavailable", environment_);
        ::send(socket, response.data(), response.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    }
}

}  // namespace mireth::receiver
