// httplib's server with its own way of handling a connection: bounded waits, a bounded head, TLS of ours.
#include "http/Listener.hpp"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <utility>

#include "base/UniqueFd.hpp"
#include "http/AnswerHeaders.hpp"
#include "http/ConnectionStream.hpp"
#include "http/HttplibAdapter.hpp"

namespace mireth::receiver {
namespace {

constexpr auto json = "application/json";
constexpr auto errorBody = R"({"status":"ERROR"})";
constexpr std::chrono::seconds grace{10};
constexpr int backlog = 256;

}  // namespace

Listener::Listener(const Limits& limits, RequestHandler& handler, const Environment& environment,
                   std::shared_ptr<TlsContext> tls)
    : limits_(limits), handler_(handler), environment_(environment), tls_(std::move(tls)) {
    // Not httplib's SO_REUSEPORT: with it a second receiver would share the port silently.
    set_socket_options([](socket_t socket) {
        const int yes = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    route();
}

bool Listener::bind(const ListenOptions& options) {
    port_ = options.port;
    if (options.port == 0) {
        port_ = bind_to_any_port(options.host);
    } else if (!bind_to_port(options.host, options.port)) {
        return false;
    }
    return port_ > 0 && ::listen(svr_sock_, backlog) == 0;
}

// Not by httplib, which closes the socket for good when a connection cannot be accepted.
void Listener::begin() {
    accepting_ = std::make_unique<Acceptor>(
        svr_sock_,
        [this](UniqueFd connection, const sockaddr_storage& peer) { take(std::move(connection), peer); },
        environment_.report);
}

void Listener::end() {
    if (accepting_) {
        stop_.raise(grace);
        accepting_.reset();
        threads_.shutdown();
    }
    // Not before: without it httplib breaks its answers off.
    const UniqueFd noLongerNeeded(svr_sock_.exchange(INVALID_SOCKET));
}

void Listener::route() {
    const auto bodyless = [this](const httplib::Request& request, httplib::Response& response) {
        dispatch(handler_, request, nullptr, response);
    };
    const auto bodied = [this](const httplib::Request& request, httplib::Response& response,
                               const httplib::ContentReader& reader) {
        // Without a length httplib would take everything up to the connection's end for the body.
        const bool framed = request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
        dispatch(handler_, request, framed ? &reader : nullptr, response);
    };
    // Not ".*": a dot matches no line end, and a decoded path may hold one.
    constexpr auto anything = "[\\s\\S]*";
    Get(anything, bodyless);
    Options(anything, bodyless);
    Post(anything, bodied);
    Put(anything, bodied);
    Patch(anything, bodied);
    Delete(anything, bodied);
    set_payload_max_length(static_cast<std::size_t>(limits_.requestBytes));
    set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.body.empty()) {
            response.set_content(errorBody, json);
        }
    });
    set_exception_handler(
        [this](const httplib::Request&, httplib::Response& response, const std::exception_ptr& error) {
            explain(error);
            response.status = 500;
            response.set_content(errorBody, json);
        });
    set_post_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
        addHeaders(request, response, environment_);
    });
}

void Listener::explain(const std::exception_ptr& error) const {
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& known) {
        environment_.report(std::string("a request failed: ") + known.what());
    } catch (...) {
        environment_.report("a request failed for an unknown reason");
    }
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
        explain(std::current_exception());
    }
}

void Listener::serve(int socket) {
    const int yes = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    ConnectionTimer timer(limits_, stop_, shedder_);
    const auto transport = tls_ ? tls_->accept(socket, timer) : plainTransport(socket, timer);
    if (transport) {
        answer(*transport, timer);
    }
    if (timer.wasShed()) {
        handler_.slowClientShed();
    } else {
        shedder_.dequeued();
    }
}

void Listener::answer(Transport& transport, ConnectionTimer& timer) {
    // Room for the framing of a chunked body, whose lengths httplib reads by itself.
    constexpr std::uint64_t framing = std::uint64_t{1} << 20U;
    ConnectionStream stream(transport, timer, limits_.requestBytes + framing);
    const auto head = stream.readHead();
    if (head == ConnectionStream::Head::absent) {
        return;
    }
    if (head == ConnectionStream::Head::oversized) {
        handler_.headTooLong();
        transport.write(bareResponse("431 Request Header Fields Too Large", environment_));
    } else {
        bool closed = false;
        process_request(stream, true, closed, hideFromHttplib);
    }
    stream.linger();
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
