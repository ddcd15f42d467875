// The library's server with its own way of handling a connection: bounded waits, a bounded head, TLS of ours.
#include "http/HttpServer.hpp"

#include <httplib.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <system_error>
#include <utility>
#include <vector>

#include "base/UniqueFd.hpp"
#include "http/Acceptor.hpp"
#include "http/ConnectionStream.hpp"
#include "http/ConnectionThreads.hpp"
#include "http/Transport.hpp"

namespace mireth::receiver {
namespace {

constexpr auto transactionId = "x-transaction-id";
constexpr auto requestId = "x-request-id";
// Carries the multipart type past the library, which would otherwise parse the body itself.
constexpr auto contentTypeAside = "X-Mireth-Content-Type";
constexpr auto json = "application/json";
// What every answer says to a browser: run nothing but what came from here, sniff and frame nothing, keep
// nothing unless the answer says otherwise.
constexpr std::array<std::pair<const char*, const char*>, 7> precautions{{
    {"Content-Security-Policy",
     "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; media-src 'self' blob:;"
     " connect-src 'self'; base-uri 'none'; form-action 'self'; frame-ancestors 'none'"},
    {"X-Content-Type-Options", "nosniff"},
    {"X-Frame-Options", "DENY"},
    {"Referrer-Policy", "no-referrer"},
    {"Cross-Origin-Opener-Policy", "same-origin"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Cache-Control", "no-store"},
}};
constexpr std::size_t pieceBuffer = std::size_t{64} * 1024;
constexpr std::chrono::seconds grace{10};
constexpr int backlog = 256;

bool isPlainIdentifier(const std::string& text) {
    const auto plain = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' ||
               c == '_' || c == '.';
    };
    return !text.empty() && text.size() <= 128 && std::all_of(text.begin(), text.end(), plain);
}

}  // namespace

class HttpServer::Listener final : private httplib::Server {
  public:
    Listener(const Limits& limits, RequestHandler& handler, const Environment& environment,
             std::shared_ptr<TlsContext> tls)
        : limits_(limits), handler_(handler), environment_(environment), tls_(std::move(tls)) {
        // Not the library's SO_REUSEPORT: with it a second receiver would share the port silently.
        set_socket_options([](socket_t socket) {
            const int yes = 1;
            ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        });
        route();
    }

    bool bind(const ListenOptions& options) {
        port_ = options.port;
        if (options.port == 0) {
            port_ = bind_to_any_port(options.host);
        } else if (!bind_to_port(options.host, options.port)) {
            return false;
        }
        return port_ > 0 && ::listen(svr_sock_, backlog) == 0;
    }

    // Not by the library, which closes the socket for good when a connection cannot be accepted.
    void begin() {
        accepting_ = std::make_unique<Acceptor>(
            svr_sock_, [this](UniqueFd connection, const sockaddr_storage&) { take(std::move(connection)); },
            environment_.report);
    }

    void end() {
        if (accepting_) {
            stop_.raise(grace);
            accepting_.reset();
            threads_.shutdown();
        }
        // Not before: without it the library breaks its answers off.
        const UniqueFd noLongerNeeded(svr_sock_.exchange(INVALID_SOCKET));
    }

    int port() const { return port_; }

  private:
    void route() {
        const auto bodyless = [this](const httplib::Request& request, httplib::Response& response) {
            exchange(request, response, nullptr);
        };
        const auto bodied = [this](const httplib::Request& request, httplib::Response& response,
                                   const httplib::ContentReader& reader) {
            // Without a length the library would take everything up to the connection's end for the body.
            const bool framed =
                request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
            exchange(request, response, framed ? &reader : nullptr);
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
                response.set_content(R"({"status":"ERROR"})", json);
            }
        });
        set_exception_handler(
            [this](const httplib::Request&, httplib::Response& response, const std::exception_ptr& error) {
                explain(error);
                response.status = 500;
                response.set_content(R"({"status":"ERROR"})", json);
            });
        set_post_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
            identify(request.get_header_value(transactionId), response);
        });
    }

    void explain(const std::exception_ptr& error) const {
        try {
            std::rethrow_exception(error);
        } catch (const std::exception& known) {
            environment_.report(std::string("a request failed: ") + known.what());
        } catch (...) {
            environment_.report("a request failed for an unknown reason");
        }
    }

    void identify(const std::string& requested, httplib::Response& response) const {
        response.set_header(transactionId,
                            isPlainIdentifier(requested) ? requested : environment_.newIdentifier());
        response.set_header(requestId, environment_.newIdentifier());
        for (const auto& [name, value] : precautions) {
            if (!response.has_header(name)) {
                response.set_header(name, value);
            }
        }
    }

    void exchange(const httplib::Request& request, httplib::Response& response,
                  const httplib::ContentReader* reader) const {
        const auto work = handler_.begin({.method = request.method,
                                          .target = request.target,
                                          .contentType = request.get_header_value(contentTypeAside),
                                          .host = request.get_header_value("Host"),
                                          .ifNoneMatch = request.get_header_value("If-None-Match"),
                                          .range = request.get_header_value("Range"),
                                          .cookie = request.get_header_value("Cookie"),
                                          .authorization = request.get_header_value("Authorization"),
                                          .origin = request.get_header_value("Origin"),
                                          .fetchSite = request.get_header_value("Sec-Fetch-Site"),
                                          .asked = request.get_header_value("X-Mireth-Request")});
        send(answerTo(request, *work, reader), request, response);
    }

    static void send(const Answer& answer, const httplib::Request& request, httplib::Response& response) {
        response.status = answer.status;
        for (const auto& [name, value] : answer.headers) {
            response.set_header(name, value);
        }
        if (answer.piece) {
            const bool compressed = answer.piece->compressible && request.version == "HTTP/1.1" &&
                                    request.has_header("Accept-Encoding");
            compressed ? sendCompressed(*answer.piece, answer.contentType, response)
                       : sendPiece(*answer.piece, answer.contentType, response);
        } else if (answer.status != 304) {
            response.set_content(answer.body, answer.contentType);
        }
    }

    static bool write(const FilePiece& piece, std::uint64_t at, std::uint64_t left, httplib::DataSink& sink) {
        std::vector<unsigned char> buffer(std::min(left, std::uint64_t{pieceBuffer}));
        return piece.file->readAt(piece.offset + at, buffer) &&
               sink.write(reinterpret_cast<const char*>(buffer.data()), buffer.size());
    }

    // The library compresses what it sends in chunks.
    static void sendCompressed(const FilePiece& piece, const std::string& contentType,
                               httplib::Response& response) {
        response.set_chunked_content_provider(contentType, [piece](std::size_t at, httplib::DataSink& sink) {
            if (at == piece.size) {
                sink.done();
                return true;
            }
            return write(piece, at, piece.size - at, sink);
        });
    }

    static void sendPiece(const FilePiece& piece, const std::string& contentType,
                          httplib::Response& response) {
        response.set_content_provider(static_cast<std::size_t>(piece.size), contentType,
                                      [piece](std::size_t at, std::size_t left, httplib::DataSink& sink) {
                                          return write(piece, at, left, sink);
                                      });
    }

    static Answer answerTo(const httplib::Request& request, Exchange& work,
                           const httplib::ContentReader* reader) {
        if (reader == nullptr) {
            return work.finish();
        }
        const auto limit = work.bodyLimit();
        if (request.has_header("Content-Length") &&
            request.get_header_value<std::uint64_t>("Content-Length") > limit) {
            return work.refuse(413);
        }
        std::uint64_t seen = 0;
        const bool whole = (*reader)([&](const char* bytes, std::size_t count) {
            seen += count;
            if (seen <= limit) {
                work.accept({bytes, count});
            }
            return seen <= limit;
        });
        if (seen > limit) {
            return work.refuse(413);
        }
        return whole ? work.finish() : work.refuse(400);
    }

    void take(UniqueFd connection) {
        const auto shared = std::make_shared<UniqueFd>(std::move(connection));
        if (!threads_.enqueue([this, shared] { serveSafely(shared->get()); })) {
            turnAway(shared->get());
        }
    }

    void serveSafely(int socket) {
        try {
            serve(socket);
        } catch (...) {
            explain(std::current_exception());
        }
    }

    void serve(int socket) {
        const int yes = 1;
        ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        Patience patience(limits_, stop_, crowd_);
        const auto transport = tls_ ? tls_->accept(socket, patience) : plainTransport(socket, patience);
        if (transport) {
            answer(*transport, patience);
        }
        if (patience.gaveWay()) {
            handler_.gaveWay();
        } else {
            crowd_.serveOne();
        }
    }

    void answer(Transport& transport, Patience& patience) {
        // Room for the framing of a chunked body, whose lengths the library reads by itself.
        constexpr std::uint64_t framing = std::uint64_t{1} << 20U;
        ConnectionStream stream(transport, patience, limits_.requestBytes + framing);
        const auto head = stream.readHead();
        if (head == ConnectionStream::Head::absent) {
            return;
        }
        if (head == ConnectionStream::Head::oversized) {
            transport.write(plainResponse("431 Request Header Fields Too Large"));
        } else {
            bool closed = false;
            process_request(stream, true, closed, [](httplib::Request& request) {
                const auto type = request.get_header_value("Content-Type");
                request.headers.erase(contentTypeAside);
                request.headers.erase("Content-Type");
                request.set_header(contentTypeAside, type);
                // The library prefers Brotli, at its slowest: half a second for a replay of half an hour.
                const auto encodings = request.get_header_value("Accept-Encoding");
                request.headers.erase("Accept-Encoding");
                if (encodings.find("gzip") != std::string::npos) {
                    request.set_header("Accept-Encoding", "gzip");
                }
                // Ranges are the handler's to answer: it knows what has any.
                request.ranges.clear();
            });
        }
        stream.linger();
    }

    // Runs where connections are accepted, so it must not wait.
    void turnAway(int socket) const {
        handler_.turnedAway();
        if (!tls_) {
            const auto response = plainResponse("503 Service Unavailable");
            ::send(socket, response.data(), response.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        }
    }

    std::string plainResponse(const std::string& status) const {
        constexpr std::string_view body = R"({"status":"ERROR"})";
        return "HTTP/1.1 " + status +
               "\r\nContent-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) +
               "\r\nConnection: close\r\n" + transactionId + ": " + environment_.newIdentifier() + "\r\n" +
               requestId + ": " + environment_.newIdentifier() + "\r\n\r\n" + std::string(body);
    }

    const Limits& limits_;
    RequestHandler& handler_;
    const Environment& environment_;
    const std::shared_ptr<TlsContext> tls_;
    int port_ = 0;
    StopSignal stop_;
    Crowd crowd_;
    ConnectionThreads threads_{limits_.connections, crowd_};
    std::unique_ptr<Acceptor> accepting_;
};

HttpServer::HttpServer(std::unique_ptr<Listener> listener) : listener_(std::move(listener)) {}
HttpServer::~HttpServer() {
    stop();
}

std::expected<std::unique_ptr<HttpServer>, std::string> HttpServer::start(const ListenOptions& options,
                                                                          const Limits& limits,
                                                                          RequestHandler& handler,
                                                                          const Environment& environment) {
    std::shared_ptr<TlsContext> tls;
    if (options.tls) {
        auto loaded = TlsContext::load(options.tls->certificate, options.tls->key);
        if (!loaded) {
            return std::unexpected(loaded.error());
        }
        tls = std::move(*loaded);
    }
    auto listener = std::make_unique<Listener>(limits, handler, environment, std::move(tls));
    errno = 0;
    if (!listener->bind(options)) {
        const std::string why = errno == 0 ? "" : ": " + std::generic_category().message(errno);
        return std::unexpected("cannot listen on " + options.host + " port " + std::to_string(options.port) +
                               why);
    }
    listener->begin();
    return std::unique_ptr<HttpServer>(new HttpServer(std::move(listener)));
}

int HttpServer::port() const {
    return listener_->port();
}
void HttpServer::stop() {
    listener_->end();
}

}  // namespace mireth::receiver
