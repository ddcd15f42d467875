// Head limits, then plain passing on of bytes.
#include "http/ConnectionStream.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace mireth::receiver {
namespace {

constexpr std::size_t longestHead = std::size_t{16} * 1024;
// httplib matches lines of the head with recursive regular expressions; these lengths keep that within a
// stack.
constexpr std::size_t longestRequestLine = 2048;
constexpr std::size_t longestHeaderLine = 4096;

bool withinBounds(std::string_view head) {
    std::size_t most = longestRequestLine;
    while (!head.empty()) {
        const auto end = std::min(head.find('\n'), head.size());
        if (end > most) {
            return false;
        }
        head.remove_prefix(std::min(head.size(), end + 1));
        most = longestHeaderLine;
    }
    return true;
}

}  // namespace

ConnectionStream::Head ConnectionStream::readHead() {
    std::array<char, 4096> buffer{};
    for (;;) {
        const auto got = transport_.read(buffer.data(), buffer.size());
        if (got <= 0) {
            return Head::absent;
        }
        timer_.moved(static_cast<std::uint64_t>(got));
        const std::size_t seen = ahead_.size() < 3 ? 0 : ahead_.size() - 3;
        ahead_.append(buffer.data(), static_cast<std::size_t>(got));
        const auto end = ahead_.find("\r\n\r\n", seen);
        const auto head = std::string_view(ahead_).substr(0, end);
        if (head.size() > longestHead || !withinBounds(head)) {
            return Head::oversized;
        }
        if (end != std::string::npos) {
            timer_.headCompleted();
            return Head::complete;
        }
    }
}

void ConnectionStream::linger() {
    transport_.endWriting();
    timer_.lingerBegins();
    std::array<char, 16384> buffer{};
    while (transport_.read(buffer.data(), buffer.size()) > 0) {
    }
}

bool ConnectionStream::is_readable() const {
    return true;
}
bool ConnectionStream::is_writable() const {
    return true;
}

ssize_t ConnectionStream::read(char* into, std::size_t size) {
    if (at_ < ahead_.size()) {
        const std::size_t count = std::min(size, ahead_.size() - at_);
        std::memcpy(into, ahead_.data() + at_, count);
        at_ += count;
        return static_cast<ssize_t>(count);
    }
    if (allowance_ == 0) {
        return -1;
    }
    const auto got =
        transport_.read(into, static_cast<std::size_t>(std::min<std::uint64_t>(size, allowance_)));
    if (got > 0) {
        allowance_ -= static_cast<std::uint64_t>(got);
        timer_.moved(static_cast<std::uint64_t>(got));
    }
    return got;
}

ssize_t ConnectionStream::write(const char* bytes, std::size_t size) {
    // An interim answer, the one to "Expect: 100-continue", is none: the request still comes in (RFC
    // 9110, 15.2).
    if (!std::string_view(bytes, size).starts_with("HTTP/1.1 1")) {
        timer_.answerBegins();
    }
    if (!transport_.write({bytes, size})) {
        return -1;
    }
    timer_.moved(size);
    return static_cast<ssize_t>(size);
}

// Nothing here asks who the client is.
void ConnectionStream::get_remote_ip_and_port(std::string& ip, int& port) const {
    ip.clear();
    port = 0;
}
void ConnectionStream::get_local_ip_and_port(std::string& ip, int& port) const {
    ip.clear();
    port = 0;
}

}  // namespace mireth::receiver
