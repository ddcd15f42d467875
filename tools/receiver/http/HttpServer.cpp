// Begins and ends the listening.
#include "http/HttpServer.hpp"

#include <cerrno>
#include <system_error>
#include <utility>

#include "http/Listener.hpp"

namespace mireth::receiver {

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
