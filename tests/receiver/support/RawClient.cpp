// Blocking sockets and a minimal response parser.
#include "support/RawClient.hpp"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <stdexcept>

namespace mireth::receiver::test {
namespace {

RawResponse parse(const std::string& text) {
    RawResponse response;
    auto end = text.find("\r\n\r\n");
    if (!text.starts_with("HTTP/1.1 ") || end == std::string::npos) {
        return response;
    }
    if (text.starts_with("HTTP/1.1 100")) {
        return parse(text.substr(end + 4));
    }
    response.status = std::stoi(text.substr(9, 3));
    response.body = text.substr(end + 4);
    std::string_view head = std::string_view(text).substr(0, end);
    while (!head.empty()) {
        const auto line = head.substr(0, head.find("\r\n"));
        head.remove_prefix(std::min(head.size(), line.size() + 2));
        if (const auto colon = line.find(": "); colon != std::string_view::npos) {
            std::string name(line.substr(0, colon));
            std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::tolower(c); });
            response.headers[name] = line.substr(colon + 2);
        }
    }
    return response;
}

}  // namespace

std::string RawResponse::header(const std::string& name) const {
    const auto found = headers.find(name);
    return found == headers.end() ? "" : found->second;
}

RawConnection::RawConnection(int port, int receiveBuffer)
    : fd_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const timeval patience{.tv_sec = 20, .tv_usec = 0};
    ::setsockopt(fd_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    ::setsockopt(fd_, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    if (receiveBuffer > 0) {
        ::setsockopt(fd_, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
    }
    if (::connect(fd_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(fd_);
        throw std::runtime_error("cannot connect");
    }
}

RawConnection::~RawConnection() {
    ::close(fd_);
}

bool RawConnection::send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const auto sent = ::send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

RawResponse RawConnection::receive() const {
    std::string text;
    std::array<char, 4096> buffer{};
    for (;;) {
        const auto got = ::recv(fd_, buffer.data(), buffer.size(), 0);
        if (got <= 0) {
            return parse(text);
        }
        text.append(buffer.data(), static_cast<std::size_t>(got));
    }
}

RawResponse request(int port, const std::string& method, const std::string& target, const std::string& body,
                    const std::string& headers) {
    const RawConnection connection(port);
    const std::string length =
        method == "GET" ? "" : "Content-Length: " + std::to_string(body.size()) + "\r\n";
    connection.send(method + " " + target + " HTTP/1.1\r\nHost: localhost\r\n" + length + headers + "\r\n" +
                    body);
    return connection.receive();
}

}  // namespace mireth::receiver::test
