// Host and port, with brackets around IPv6.
#include "settings/ListenAddress.hpp"

#include <arpa/inet.h>
#include <netdb.h>

#include <charconv>
#include <memory>

namespace mireth::receiver {

std::expected<ListenAddress, std::string> ListenAddress::parse(const std::string& text) {
    const auto bad =
        std::unexpected("\"" + text + "\" is no address to listen on; write HOST:PORT or [IPV6]:PORT");
    const auto colon = text.rfind(':');
    if (colon == std::string::npos || colon == 0) {
        return bad;
    }
    ListenAddress result{.host = text.substr(0, colon)};
    const bool bracketed = result.host.starts_with('[') && result.host.ends_with(']');
    if (bracketed) {
        result.host = result.host.substr(1, result.host.size() - 2);
    } else if (result.host.find_first_of(":[]") != std::string::npos) {
        return bad;
    }
    const char* const begin = text.data() + colon + 1;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(begin, end, result.port);
    if (error != std::errc() || stop != end || result.port < 0 || result.port > 65535 ||
        result.host.empty()) {
        return bad;
    }
    return result;
}

std::string ListenAddress::text() const {
    const bool v6 = host.find(':') != std::string::npos;
    return (v6 ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

std::string ListenAddress::complaintAboutHost() const {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_PASSIVE;
    addrinfo* found = nullptr;
    const int error = ::getaddrinfo(host.c_str(), nullptr, &hints, &found);
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(found, &::freeaddrinfo);
    return error == 0 ? "" : ::gai_strerror(error);
}

bool ListenAddress::isLoopback() const {
    in_addr v4{};
    if (::inet_pton(AF_INET, host.c_str(), &v4) == 1) {
        return (ntohl(v4.s_addr) >> 24U) == 127;
    }
    in6_addr v6{};
    if (::inet_pton(AF_INET6, host.c_str(), &v6) == 1) {
        return IN6_IS_ADDR_LOOPBACK(&v6);
    }
    return host == "localhost";
}

}  // namespace mireth::receiver
