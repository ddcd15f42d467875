#include "RawServer.hpp"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace mireth::test {

namespace {

constexpr int pollMilliseconds = 20;

void check(int result, const char* what) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

std::size_t contentLength(const std::string& head) {
    const std::size_t at = head.find("Content-Length: ");
    return at == std::string::npos ? 0 : std::stoul(head.substr(at + 16));
}

}  // namespace

Connection::~Connection() {
    close(socket_);
}

bool Connection::waitFor(short events) const {
    while (!closing_) {
        pollfd state{.fd = socket_, .events = events, .revents = 0};
        if (poll(&state, 1, pollMilliseconds) > 0) {
            return true;
        }
    }
    return false;
}

bool Connection::readSome() {
    std::array<char, 64 * 1024> buffer{};
    if (!waitFor(POLLIN)) {
        return false;
    }
    const ssize_t got = recv(socket_, buffer.data(), buffer.size(), 0);
    if (got <= 0) {
        return false;
    }
    unread_.append(buffer.data(), static_cast<std::size_t>(got));
    return true;
}

std::string Connection::readUntil(std::string_view end) {
    std::size_t at = unread_.find(end);
    while (at == std::string::npos && readSome()) {
        at = unread_.find(end);
    }
    const std::size_t length = at == std::string::npos ? unread_.size() : at + end.size();
    std::string text = unread_.substr(0, length);
    unread_.erase(0, length);
    return text;
}

std::string Connection::readRequest() {
    std::string request = readUntil("\r\n\r\n");
    const std::size_t length = contentLength(request);
    while (unread_.size() < length && readSome()) {
    }
    request += unread_.substr(0, length);
    unread_.erase(0, length);
    return request;
}

bool Connection::write(std::string_view bytes) {
    while (!bytes.empty()) {
        if (!waitFor(POLLOUT)) {
            return false;
        }
        const ssize_t sent = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent < 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

bool Connection::waitForClose() {
    while (readSome()) {
    }
    return !closing_;
}

RawServer::RawServer(Handler handler) : handler_(std::move(handler)) {
    sockaddr_in address{};
    socklen_t size = sizeof(address);
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    check(listener_, "socket");
    check(bind(listener_, reinterpret_cast<const sockaddr*>(&address), size), "bind");
    check(listen(listener_, 64), "listen");
    check(getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size), "getsockname");
    port_ = ntohs(address.sin_port);
    acceptor_ = std::thread([this] { acceptAll(); });
}

RawServer::~RawServer() {
    closing_ = true;
    acceptor_.join();
    for (auto& handler : handlers_) {
        handler.join();
    }
    close(listener_);
}

std::string RawServer::origin(std::string_view scheme, std::string_view host) const {
    return std::string(scheme) + "://" + std::string(host) + ":" + std::to_string(port_);
}

void RawServer::acceptAll() {
    while (!closing_) {
        pollfd state{.fd = listener_, .events = POLLIN, .revents = 0};
        if (poll(&state, 1, pollMilliseconds) <= 0) {
            continue;
        }
        const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) {
            continue;
        }
        ++connections_;
        handlers_.emplace_back([this, socket] {
            Connection connection(socket, closing_);
            handler_(connection);
        });
    }
}

}  // namespace mireth::test
